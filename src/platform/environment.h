// The process environment as the library sees it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/export.h"

namespace zolt::env {

// Fills `dirs` with the application's working directories, in search order, and returns true. Without a provider they
// are the elements of the environment variable QUILL_WDIRS, a list in the platform's path separator (":" on POSIX, ";"
// on Windows); empty elements are left out, and an unset variable gives an empty list. With a provider the answer is
// the provider's; false leaves `dirs` untouched.
PLATFORMUTILS_EXPORT bool GetWDIRs(std::vector<std::string>& dirs);

using WDIRsProvider = std::function<bool(std::vector<std::string>&)>;

// Installs the source of the working directories in place of the environment; an empty function restores it. From any
// thread; a call of GetWDIRs that is under way finishes with the earlier one.
PLATFORMUTILS_EXPORT void SetWDIRsProvider(WDIRsProvider provider);

// The value of an environment variable, or "" when it is not set.
PLATFORMUTILS_EXPORT std::string GetVariable(const char* name);

}  // namespace zolt::env
