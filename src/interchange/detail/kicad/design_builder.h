// From the files of a design to its model.
#pragma once

#include <vector>

#include "interchange/detail/design_model.h"
#include "interchange/detail/kicad/hierarchy.h"

namespace Quill::Interchange::Kicad {

// The files are read further as they are needed. Items have no ids yet. Throws a KicadMessage.
DesignModel BuildDesign(Hierarchy& hierarchy, const KicadOptions& options, std::vector<KicadMessage>& warnings);

}  // namespace Quill::Interchange::Kicad
