#include "pages/detail/place_names.h"

#include <optional>

#include "designdata/detail/instance_name.h"

namespace Quill::detail {

PlaceNames::Place PlaceNames::Below(const Place& parent, const Orin::IPath& path) {
    m_text.resize(parent.end);
    Orin::ContainerT<const Orin::IComp> comp;
    // A place that does not know what it lies below begins a name of its own.
    if (!path.GetParentComp(comp)) return {parent.end, parent.end, false, false};
    if (parent.isNameless) return parent;
    const std::optional<std::string> element = Utils::detail::InstanceName(*comp);
    if (!element) return {parent.begin, parent.end, true, true};
    if (parent.hasElements) m_text += '\\';
    m_text += *element;
    return {parent.begin, m_text.size(), true, false};
}

std::string PlaceNames::PageName(const Place& place, const Orin::IGroup& sheet) const {
    Orin::String sheetName;
    static_cast<void>(sheet.GetName(sheetName));
    std::string name;
    if (!place.isNameless && place.end != place.begin) {
        name.reserve(place.end - place.begin + 1 + sheetName.Length());
        name.append(m_text, place.begin, place.end - place.begin);
        name += '\\';
    }
    name += sheetName.View();
    return name;
}

}  // namespace Quill::detail
