// Ids of what is drawn, from the library's generators.
#pragma once

#include "interchange/detail/design_model.h"

namespace Quill::Interchange::Kicad {

// Gives every drawn item of the model its id, when the objects have entered the snapshot with their attributes and
// nothing is drawn yet, and stores how far the ids of each sheet and symbol went. Throws a failed Orin::Result, or a
// DesignJsonFault when a generator fails.
void NumberItems(DesignModel& design, const Orin::ContainerT<const Orin::ISnapshot>& snapshot);

}  // namespace Quill::Interchange::Kicad
