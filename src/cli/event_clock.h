// When and by which line of a script the events were raised that the dispatcher hands on.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>

#include "cli/script_run.h"
#include "designdb/database.h"

namespace Quill::Cli {

// The dispatcher's queue keeps no times. So the clock hears each callback of the database on the thread that edits,
// before the dispatcher does, and sends a mark through the same queue: what arrives behind a mark was raised with it.
class EventClock {
public:
    // Borrows the run, whose thread is the one that edits. To be made on the thread that owns the dispatcher, before
    // anybody registers there, and to be destroyed when all of them are gone again.
    EventClock(const Orin::DesignDb::Database& database, const ScriptRun& run);
    EventClock(const EventClock&) = delete;
    EventClock& operator=(const EventClock&) = delete;
    ~EventClock();

    // ---- For the owner of the dispatcher, while it calls an observer ----

    // The line of the script that raised the event.
    std::size_t Line() const;
    // How long ago that was.
    std::chrono::nanoseconds Waited() const;

    // Waits until there may be something to dispatch; false once the edits have ended.
    bool Wait();

    // ---- For the thread that edits ----

    void End();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Quill::Cli
