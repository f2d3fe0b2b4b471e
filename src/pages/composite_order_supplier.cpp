#include "pages/composite_order_supplier.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "pages/page_objects.h"
#include "properties/property_mangler.h"
#include "text/ascii.h"
#include "text/number.h"

namespace Quill {

namespace {

using Block = Orin::ContainerT<const Orin::IBlock>;
using Comp = Orin::ContainerT<const Orin::IComp>;
using Sheet = Orin::ContainerT<const Orin::IGroup>;

bool IsHierarchical(const Comp& comp) {
    Orin::CompTypes types;
    Block child;
    return comp->GetType(types) && types.Contains(Orin::ECompType::Hierarchical) && comp->GetChildBlock(child) &&
           child.IsValid();
}

// Hands the hierarchical components among `objects` to `take`, in list order. `get(comp, index)` fetches one.
template <class Get, class Take>
void ForEachHierarchical(const Orin::ListT<Orin::Index>& objects, const Get& get, const Take& take) {
    for (const Orin::Index& index : objects) {
        if (index.GetType() != Orin::EObjectType::Comp) continue;
        Comp comp;
        if (get(comp, index) && IsHierarchical(comp)) take(comp, index);
    }
}

// The same for the components of a page as its block defines them.
template <class Take>
void ForEachOfPage(const Block& block, const PageID& page, PageObjects& objects, const Take& take) {
    Sheet sheet;
    if (!block || !block->GetGroup(sheet, page.group)) return;
    ForEachHierarchical(
        objects.ObjectsOf(sheet),
        [&](Comp& comp, const Orin::Index& index) { return static_cast<bool>(block->GetComp(comp, index)); }, take);
}

void FinishOrder(std::vector<Orin::Index>& order, bool ascending) {
    if (!ascending) std::reverse(order.begin(), order.end());
}

// Appends in ascending order of the keys.
template <class Key>
void AppendValues(const std::map<Key, Orin::Index>& sorted, std::vector<Orin::Index>& order) {
    for (const auto& [key, index] : sorted)
        order.push_back(index);
}

// What two designators are compared by: the text before the trailing digits, then their number.
using DesignatorKey = std::pair<std::string, std::int32_t>;

DesignatorKey SplitDesignator(std::string_view designator) {
    std::size_t digits = designator.size();
    while (digits > 0 && Text::IsDigit(designator[digits - 1]))
        --digits;
    return {std::string(designator.substr(0, digits)), Text::ParseInt32(designator.substr(digits)).value};
}

Orin::String DesignatorOf(const Comp& comp) {
    Orin::String designator;
    for (const char* const name : {"REFDES", "Ref Designator"})
        if (comp->GetAttribute(name, designator, Orin::EAttributeType::User)) break;
    return designator;
}

// A field of a stored order. A negative number wraps round to the index of nothing, which the walk skips; only a field
// that is no number at all makes the supplier decline.
std::optional<Orin::Index> ParseField(std::string_view field) {
    while (!field.empty() && Text::IsSpace(field.front()))
        field.remove_prefix(1);
    const bool negative = field.size() > 1 && field[0] == '-' && Text::IsDigit(field[1]);
    if (negative) field.remove_prefix(1);
    const auto number = Text::ParseUInt64(field);
    if (!number.Ok()) return std::nullopt;
    return Orin::Index(negative ? 0 - number.value : number.value);
}

}  // namespace

CompositeOrderSupplier::~CompositeOrderSupplier() = default;

bool DefaultOrderSupplier::supplyOrder(const Block& block, const PageID& page, std::vector<Orin::Index>& order) {
    ForEachOfPage(block, page, *m_objects, [&](const Comp&, const Orin::Index& index) { order.push_back(index); });
    return true;
}

bool NameOrderSupplier::supplyOrder(const Block& block, const PageID& page, std::vector<Orin::Index>& order) {
    std::map<std::string, Orin::Index> byLabel;
    ForEachOfPage(block, page, *m_objects, [&](const Comp& comp, const Orin::Index& index) {
        Orin::String label;
        static_cast<void>(comp->GetLabel(label));
        byLabel[std::string(label.View())] = index;
    });
    AppendValues(byLabel, order);
    FinishOrder(order, m_ascending);
    return true;
}

bool SymbolOrderSupplier::supplyOrder(const Block& block, const PageID& page, std::vector<Orin::Index>& order) {
    std::map<std::string, Orin::Index> byName;
    ForEachOfPage(block, page, *m_objects, [&](const Comp& comp, const Orin::Index& index) {
        Orin::String name;
        static_cast<void>(comp->GetName(name));
        byName[std::string(name.View())] = index;
    });
    AppendValues(byName, order);
    FinishOrder(order, m_ascending);
    return true;
}

bool RefDefOrderSupplier::supplyOrder(const Block& block, const PageID& page, std::vector<Orin::Index>& order) {
    std::map<DesignatorKey, Orin::Index> byDesignator;
    Orin::ContainerT<const Orin::IPath> path;
    Sheet sheet;
    // Designators belong to the place, so they are read from the occurrences, and of the list as it stands now.
    Orin::ListT<Orin::Index> objects;
    if (block && block->GetGroup(sheet, page.group) && m_objects->Resolver().GetPath(path, page.path))
        static_cast<void>(sheet->GetListObjects(objects));
    ForEachHierarchical(
        objects,
        [&](Comp& comp, const Orin::Index& index) { return static_cast<bool>(path->GetCompInPath(comp, index)); },
        [&](const Comp& comp, const Orin::Index& index) {
            const Orin::String designator = DesignatorOf(comp);
            if (designator.IsEmpty() || !byDesignator.try_emplace(SplitDesignator(designator.View()), index).second)
                order.push_back(index);
        });
    AppendValues(byDesignator, order);
    FinishOrder(order, m_ascending);
    return !order.empty();
}

bool CustomOrderSupplier::supplyOrder(const Block& block, const PageID& page, std::vector<Orin::Index>& order) {
    constexpr std::size_t FieldLength = 20;
    Sheet sheet;
    Orin::String stored;
    const Orin::String attribute = Utils::CPropertyMangler::Mangle("COMPS_ORDER", DataModel::PropertyType::Internal);
    if (!block || !block->GetGroup(sheet, page.group) || !sheet->GetAttribute(attribute, stored)) return false;
    for (std::string_view rest = stored.View(); rest.size() >= FieldLength; rest.remove_prefix(FieldLength)) {
        const std::optional<Orin::Index> index = ParseField(rest.substr(0, FieldLength));
        if (!index) return false;
        order.push_back(*index);
    }
    FinishOrder(order, m_ascending);
    return true;
}

}  // namespace Quill
