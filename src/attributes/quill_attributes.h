// What the name of a stored attribute tells.
#pragma once

#include <set>
#include <string>

#include "quillutils_export.h"

namespace NQuillUtils {

// Static operations only, to be called or derived from. Names are compared byte by byte where nothing else is said.
// Any thread may call; what concerns packaging reads the current flow (attributes/attribute_names.h).
class QUILLUTILS_EXPORT CQuillAttributes {
public:
    // Whether `attrName` is the stored name of the library's own key `key`. The bare key is not.
    static bool IsQuillInternalName(const std::string& attrName, const std::string& key);

    // Whether `attrName` is the stored name of one of the reserved keys (attributes/reserved_keys.h).
    static bool IsQuillInternalName(const std::string& attrName);

    // Whether `attrName` is the stored name of the mark of local symbols.
    static bool IsLocalSymbol(const std::string& attrName);

    // `names` becomes the attributes that carry packaging information in the current flow: its reference designator.
    static void GetPackagingInfoAttrs(std::set<std::string>& names);

    // Whether `attrName` is one of those, in any letter case.
    static bool IsPackagingInfo(const std::string& attrName);

    virtual ~CQuillAttributes();

protected:
    CQuillAttributes() = default;
};

}  // namespace NQuillUtils
