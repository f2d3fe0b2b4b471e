// One element of a hierarchical name, for those who make the names of many places and know the rest already.
#pragma once

#include <optional>
#include <string>

#include "orin/design_objects.h"

namespace Quill::Utils::detail {

// The element of a hierarchical component, as QuillInOrin::GetHierarchicalName describes it; it may be empty. Nothing
// when every name that the component takes part in is to be empty.
std::optional<std::string> InstanceName(const Orin::IComp& comp);

}  // namespace Quill::Utils::detail
