// Inversion marks of labels, and which texts may be labels.
#pragma once

#include <string>

#include "quillutils_export.h"

namespace Quill {

// The mark "~" of an active-low signal. A label that begins with it is inverted as a whole; one that holds it only
// further on is inverted in part. No state; any thread.
class QUILLUTILS_EXPORT LabelInversionUtils {
public:
    // Whether the label is inverted as a whole.
    static bool Get(const std::string& label);

    // Whether the label is inverted in part. A label that is inverted as a whole is not, whatever other marks it holds.
    static bool IsPartial(const std::string& label);

    // Makes the label inverted as a whole, or not inverted at all; marks of parts go either way. Always true.
    static bool Set(std::string& label, bool inverted);
};

// Checks on labels that a user typed, before they are stored. The empty label is valid. No state; any thread.
class QUILLUTILS_EXPORT LabelValidationUtils {
public:
    // Whether the label is free of backslashes, which separate the levels of hierarchical names.
    static bool IslabelValid(const std::string& label);

    // Whether the label may name a net: it is not "|" alone, and holds none of @ $ ' " ; \ < > { } *
    static bool IsNetLabelValid(const std::string& label);
};

}  // namespace Quill
