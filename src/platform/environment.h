// The process environment as the library sees it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/export.h"

namespace zolt::env {

// Replaces `dirs` by the application's working directories, in search order, and returns true. Without a provider they
// are the elements of the environment variable QUILL_WDIRS, a list in the platform's path separator (":" on POSIX, ";"
// on Windows); empty elements are left out, and an unset variable gives an empty list. With a provider the answer is
// the provider's. When that is false, `dirs` is untouched, also where the provider wrote into its list; what a provider
// throws goes to the caller in the same way. No lock is held during its call.
PLATFORMUTILS_EXPORT bool GetWDIRs(std::vector<std::string>& dirs);

// Fills the list with the working directories in search order, or returns false when it has none to tell.
using WDIRsProvider = std::function<bool(std::vector<std::string>&)>;

// Installs the source of the working directories in place of the environment; an empty function restores it. The
// provider is given an empty list to fill, on the thread that asks, by several threads at once. From any
// thread; a call of GetWDIRs that is under way finishes with the earlier one.
PLATFORMUTILS_EXPORT void SetWDIRsProvider(WDIRsProvider provider);

// The value of an environment variable, or "" when it is not set. On Windows in the ANSI code page. The environment is
// shared by the process: no other thread may change it meanwhile.
PLATFORMUTILS_EXPORT std::string GetVariable(const char* name);

}  // namespace zolt::env
