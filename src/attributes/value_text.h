// Clean-up of attribute values.
#pragma once

#include <string>

#include "quillutils_export.h"

namespace NQuillUtils {

// Removes blanks, tabs and carriage returns from both ends; a newline is content. True when `value` was changed; false,
// with `value` as it was, also for a value of nothing but such characters.
QUILLUTILS_EXPORT bool TrimValue(std::string& value);

// Removes the zeros that end a decimal fraction; the point stays: "1.500" becomes "1.5", "2.000" becomes "2.". Without
// a point nothing changes.
QUILLUTILS_EXPORT void TrimZero(std::string& value);

}  // namespace NQuillUtils
