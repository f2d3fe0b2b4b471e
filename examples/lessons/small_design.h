// The design that the lessons work on. An application would have opened one of its user's instead.
#pragma once

#include <memory>

#include "designdb/database.h"
#include "designdb/editor.h"
#include "orin/orin_pi.h"

namespace Lessons {

// Database operations return an Orin::Result; a lesson that cannot go on throws it, as the library itself does.
void Check(const Orin::Result& result);

// A lamp with two sheets. On each stands a channel, CH1 and CH2: two uses of one block that has a sheet of its own.
// The signal DIM leaves every one of the sheets by a connector with that label.
struct SmallDesign {
    SmallDesign();

    Orin::DesignDb::Database database;                 // the project, in memory
    std::unique_ptr<Orin::OrinPI> connection;          // one client of it
    Orin::ContainerT<const Orin::ISnapshot> snapshot;  // the working design, as this client sees it
    Orin::Index lamp, channel;                         // blocks
    Orin::Index firstConnector;                        // DIM on the lamp's sheet 1
};

}  // namespace Lessons
