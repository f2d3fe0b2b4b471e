// The design flows as commands name them.
#pragma once

#include <string>

#include "config/flow.h"

namespace Quill::Cli {

// The flow of that name or type, in any letter case; it lives as long as the program. Throws a CommandError when there
// is none.
const CFlow& FindFlow(const std::string& nameOrType);

}  // namespace Quill::Cli
