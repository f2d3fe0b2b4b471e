#include "attributes/quill_attributes.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "attributes/attribute_names.h"
#include "attributes/reserved_keys.h"
#include "properties/property_mangler.h"
#include "text/ascii.h"

namespace NQuillUtils {

namespace {

constexpr std::string_view ReservedKeys[] = {
    NReservedKeys::NetsQuillIndices, NReservedKeys::NetsQuillNames,
    NReservedKeys::Signals,          NReservedKeys::Bus,
    NReservedKeys::SignalMap,        NReservedKeys::BlkDate,
    NReservedKeys::LocalSymbol,      NReservedKeys::ReadOnlySheet,
    NReservedKeys::NamePlaceholder,
};

// Cuts the prefix of internal properties off. Not by unmangling, which lets any separator pass.
bool CutInternalPrefix(std::string_view& name) {
    using Quill::Utils::CPropertyMangler;
    const Orin::String prefix = CPropertyMangler::Mangle("", CPropertyMangler::PropertyType::Internal);
    if (!name.starts_with(prefix.View())) return false;
    name.remove_prefix(prefix.Length());
    return true;
}

}  // namespace

CQuillAttributes::~CQuillAttributes() = default;

bool CQuillAttributes::IsQuillInternalName(const std::string& attrName, const std::string& key) {
    std::string_view name = attrName;
    return CutInternalPrefix(name) && name == key;
}

bool CQuillAttributes::IsQuillInternalName(const std::string& attrName) {
    std::string_view name = attrName;
    return CutInternalPrefix(name) &&
           std::find(std::begin(ReservedKeys), std::end(ReservedKeys), name) != std::end(ReservedKeys);
}

bool CQuillAttributes::IsLocalSymbol(const std::string& attrName) {
    return IsQuillInternalName(attrName, NReservedKeys::LocalSymbol);
}

void CQuillAttributes::GetPackagingInfoAttrs(std::set<std::string>& names) {
    names.clear();
    names.insert(NAttributeNames::refDesignator);
}

bool CQuillAttributes::IsPackagingInfo(const std::string& attrName) {
    std::set<std::string> names;
    GetPackagingInfoAttrs(names);
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& name) { return Quill::Text::EqualNoCase(name, attrName); });
}

}  // namespace NQuillUtils
