// Names under which properties are stored as plain attributes: the property's kind is a prefix of the name.
#pragma once

#include <string>

#include "orin/handles.h"
#include "orin/string.h"
#include "quillutils_export.h"

namespace Orin {
class IBlockViewQuill;
class ICompViewQuill;
}  // namespace Orin

namespace Quill::DataModel {

// Whose a property is; it decides the prefix of the stored name.
enum class PropertyType : int {
    Regular = 0,            // stored under its own name
    NotCommonProperty = 1,  // "$$NotCommonProperty_"
    RFVarBlock = 2,         // "$$_RFVarBlock_"
    RFParametric = 3,       // "$$_RFParametric_"
    Internal = 4,           // "$$Internal_", what this library keeps for itself
    Constraint = 5,         // "$$Constraint_"
};

}  // namespace Quill::DataModel

namespace Quill::Utils {

// Builds stored names and takes them apart. Any thread may call, also from static initialisers.
// Nothing throws but for want of memory.
class QUILLUTILS_EXPORT CPropertyMangler {
public:
    using PropertyType = DataModel::PropertyType;

    // `out` becomes the stored name of the property; a regular one keeps its name. A type that is none of the six gives
    // "$$_" and the name. `name` may lie inside `out`; null counts as "".
    static void Mangle(const char* name, PropertyType type, std::string& out);

    // The stored name as a database text. A type that is none of the six gives the name alone, unlike the form above:
    // both answers are in stored designs. An empty name gives the bare prefix and allocates nothing.
    static Orin::String Mangle(const char* name, PropertyType type);

    // The name behind its prefix. It begins with "$$" and the name of a kind (that of the regular one too), and ends
    // after one more character, which need not be "_": stored names are read as they always were. A name without prefix
    // is given whole, as Regular.
    //
    // The pointer forms point into `name` and give null for null. The text form gives "" for null; `name` may lie
    // inside `plain`.
    static const char* Unmangle(const char* name);
    static const char* Unmangle(const char* name, PropertyType& type);
    static PropertyType Unmangle(const char* name, std::string& plain);

    // The time at which the view was changed last, as local time in a format of strftime; null means "%d/%m/%Y:%H:%M".
    // `out` is left as it was when the view is empty or tells no time, when the time lies before 1970, and when the
    // text would be empty or longer than 127 bytes.
    static void GetPropDATETIME(const Orin::ContainerT<const Orin::IBlockViewQuill>& view, std::string& out,
                                const char* format);
    static void GetPropDATETIME(const Orin::ContainerT<const Orin::ICompViewQuill>& view, std::string& out,
                                const char* format);

    // Whether it is the property whose value GetPropDATETIME gives: "@DATETIME", in capital letters.
    static bool IsPropDATETIME(const std::string& name);
};

}  // namespace Quill::Utils
