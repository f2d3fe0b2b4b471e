// What the project file beside the root schematic has of use.
#pragma once

#include <vector>

#include "interchange/detail/kicad/hierarchy.h"
#include "interchange/detail/kicad/label_text.h"

namespace Quill::Interchange::Kicad {

// The bus aliases of the project; none when there is no project file. One that cannot be understood is a warning.
BusAliases ReadProjectAliases(const Hierarchy& hierarchy, std::vector<KicadMessage>& warnings);

}  // namespace Quill::Interchange::Kicad
