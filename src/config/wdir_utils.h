// The directories in which design-support files are looked for.
#pragma once

#include <string>
#include <vector>

#include "quillutils_export.h"

namespace Quill {

// Static operations only; callable from any thread.
class QUILLUTILS_EXPORT WdirUtils {
public:
    // The platform's list of working directories and the platform's answer, unchanged.
    static bool GetWDIRs(std::vector<std::string>& dirs);

    // Replaces `dirs` by the working directories for one flow type, in search order: the platform's list, then the
    // flow's template location when the flow is known (an empty text when TOVE_HOME is empty), then TOVE_HOME +
    // "/standard" with "/" for every backslash and in small letters, when TOVE_HOME is not empty. A directory of the
    // platform's list that is one of the two last, byte for byte, stands at the end only. False, with `dirs` untouched,
    // when the platform has no list.
    static bool GetWDIRs(std::vector<std::string>& dirs, const std::string& flowType);

    WdirUtils() = delete;
};

}  // namespace Quill
