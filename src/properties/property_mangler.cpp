#include "properties/property_mangler.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "orin/views.h"
#include "text/calendar.h"

namespace Quill::Utils {

namespace {

using DataModel::PropertyType;

// Laid down at compile time, so that a static initialiser of any module may mangle names.
constinit Orin::String::Literal NotCommonText("$$NotCommonProperty_");
constinit Orin::String::Literal RFVarBlockText("$$_RFVarBlock_");
constinit Orin::String::Literal RFParametricText("$$_RFParametric_");
constinit Orin::String::Literal InternalText("$$Internal_");
constinit Orin::String::Literal ConstraintText("$$Constraint_");

constinit const Orin::String NotCommonPrefix(NotCommonText);
constinit const Orin::String RFVarBlockPrefix(RFVarBlockText);
constinit const Orin::String RFParametricPrefix(RFParametricText);
constinit const Orin::String InternalPrefix(InternalText);
constinit const Orin::String ConstraintPrefix(ConstraintText);

constexpr std::string_view Mark = "$$";

struct Kind {
    std::string_view name;
    const Orin::String* prefix;  // null: stored under its own name
};

// By the value of PropertyType.
constexpr Kind Kinds[] = {
    {"Regular", nullptr},
    {"NotCommonProperty", &NotCommonPrefix},
    {"_RFVarBlock", &RFVarBlockPrefix},
    {"_RFParametric", &RFParametricPrefix},
    {"Internal", &InternalPrefix},
    {"Constraint", &ConstraintPrefix},
};

// The kind of that value, or one without name and prefix.
constexpr Kind KindOf(PropertyType type) {
    const auto value = static_cast<std::size_t>(type);
    return value < std::size(Kinds) ? Kinds[value] : Kind{};
}

template <class View>
void FormatModificationTime(const Orin::ContainerT<const View>& view, std::string& out, const char* format) {
    int seconds = 0;
    if (!view || !view->GetModificationTime(seconds) || seconds < 0) return;
    const std::optional<std::tm> fields = Text::LocalFields(seconds);
    if (!fields) return;
    std::string text = Text::FormatFields(*fields, format != nullptr ? format : "%d/%m/%Y:%H:%M");
    if (!text.empty()) out = std::move(text);
}

}  // namespace

void CPropertyMangler::Mangle(const char* name, PropertyType type, std::string& out) {
    const std::string_view plain = name != nullptr ? std::string_view(name) : std::string_view();
    std::string stored;  // apart from `out`, which may hold the name
    if (type != PropertyType::Regular) {
        const std::string_view kind = KindOf(type).name;
        stored.reserve(Mark.size() + kind.size() + 1 + plain.size());
        stored.append(Mark).append(kind).append(1, '_');
    }
    stored.append(plain);
    out = std::move(stored);
}

Orin::String CPropertyMangler::Mangle(const char* name, PropertyType type) {
    const Orin::String* const prefix = KindOf(type).prefix;
    return prefix != nullptr ? *prefix + name : Orin::String(name);
}

const char* CPropertyMangler::Unmangle(const char* name, PropertyType& type) {
    type = PropertyType::Regular;
    if (name == nullptr || std::strncmp(name, Mark.data(), Mark.size()) != 0) return name;
    const char* const kindName = name + Mark.size();
    for (std::size_t value = 0; value < std::size(Kinds); ++value) {
        const std::string_view kind = Kinds[value].name;
        if (std::strncmp(kindName, kind.data(), kind.size()) != 0) continue;
        type = static_cast<PropertyType>(value);
        const char* const separator = kindName + kind.size();
        return *separator != '\0' ? separator + 1 : separator;
    }
    return name;
}

const char* CPropertyMangler::Unmangle(const char* name) {
    PropertyType type;
    return Unmangle(name, type);
}

CPropertyMangler::PropertyType CPropertyMangler::Unmangle(const char* name, std::string& plain) {
    PropertyType type;
    const char* const behindPrefix = Unmangle(name, type);
    plain = behindPrefix != nullptr ? std::string(behindPrefix) : std::string();
    return type;
}

void CPropertyMangler::GetPropDATETIME(const Orin::ContainerT<const Orin::IBlockViewQuill>& view, std::string& out,
                                       const char* format) {
    FormatModificationTime(view, out, format);
}

void CPropertyMangler::GetPropDATETIME(const Orin::ContainerT<const Orin::ICompViewQuill>& view, std::string& out,
                                       const char* format) {
    FormatModificationTime(view, out, format);
}

bool CPropertyMangler::IsPropDATETIME(const std::string& name) {
    return name == "@DATETIME";
}

}  // namespace Quill::Utils
