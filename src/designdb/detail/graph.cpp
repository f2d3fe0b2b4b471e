#include "designdb/detail/graph.h"

#include <algorithm>
#include <tuple>

namespace Orin::DesignDb {

Location ForeignIndexes::Find(const Index& index) const noexcept {
    const RefPtr<Shard>& shard = m_shards[ShardOf(index)];
    if (!shard) return {};
    const auto found = shard->entries.find(index);
    return found != shard->entries.end() ? found->second : Location();
}

void ForeignIndexes::Enter(const Index& index, Location location) {
    if (Own(ShardOf(index)).entries.insert_or_assign(index, location).second) ++m_count;
}

void ForeignIndexes::Remove(const Index& index) {
    m_count -= Own(ShardOf(index)).entries.erase(index);
}

ForeignIndexes::Shard& ForeignIndexes::Own(std::size_t at) {
    RefPtr<Shard>& shard = m_shards[at];
    if (!shard) {
        shard = RefPtr<Shard>(new Shard);
    } else if (shard->references.load(std::memory_order_acquire) != 1) {
        shard = RefPtr<Shard>(new Shard(*shard));
    }
    return *shard;
}

std::uint64_t Graph::NextStructure() noexcept {
    static std::atomic<std::uint64_t> s_last{0};
    return s_last.fetch_add(1, std::memory_order_relaxed) + 1;
}

Location Graph::Locate(const Index& index) const noexcept {
    if (index.Middle() == 0) {
        EObjectType kind = index.GetType();
        if (kind == EObjectType::CompView) kind = EObjectType::BlockView;
        const Location own{kind, index.Low()};
        if (VisitRecord(*this, own, false, [&](const auto& record) { return record.index == index; })) return own;
    }
    return m_foreign.IsEmpty() ? Location() : m_foreign.Find(index);
}

Index ViewOwnerIndex(const Graph& graph, const ViewRecord& view) noexcept {
    if (const GroupRecord* const group = graph.Find<GroupRecord>(view.group)) return group->index;
    const CompRecord* const comp = graph.Find<CompRecord>(view.comp);
    return comp != nullptr ? comp->index : Index();
}

std::size_t AttributePosition(const ListAttribute& attributes, std::string_view name, EAttributeType type) noexcept {
    const Attribute* const place =
        std::lower_bound(attributes.begin(), attributes.end(), std::pair(type, name),
                         [](const Attribute& attribute, const std::pair<EAttributeType, std::string_view>& key) {
                             return std::pair(attribute.type, attribute.name.View()) < key;
                         });
    return static_cast<std::size_t>(place - attributes.begin());
}

const Attribute* FindAttribute(const ListAttribute& attributes, std::string_view name, EAttributeType type) noexcept {
    const std::size_t position = AttributePosition(attributes, name, type);
    if (position == attributes.Count()) return nullptr;
    const Attribute& attribute = attributes[position];
    return attribute.type == type && attribute.name.View() == name ? &attribute : nullptr;
}

ListAttribute WithAttribute(ListAttribute attributes, const String& name, const String& value, EAttributeType type) {
    const std::size_t position = AttributePosition(attributes, name.View(), type);
    const bool present = FindAttribute(attributes, name.View(), type) != nullptr;
    if (present) {
        (&attributes.Front())[position].value = value;
    } else {
        attributes.Insert(position, {name, value, type});
    }
    return attributes;
}

ListAttribute WithoutAttribute(ListAttribute attributes, std::string_view name, EAttributeType type) {
    if (FindAttribute(attributes, name, type) == nullptr) return attributes;
    if (attributes.Count() == 1) return {};
    attributes.Erase(AttributePosition(attributes, name, type));
    return attributes;
}

bool IsMember(const Memberships& memberships, Slot group) noexcept {
    return memberships.first == group ||
           std::find(memberships.further.begin(), memberships.further.end(), group) != memberships.further.end();
}

const Drawing* FindDrawing(const Drawings& drawings, Slot view) noexcept {
    const Drawing* const place = std::lower_bound(drawings.begin(), drawings.end(), view,
                                                  [](const Drawing& d, Slot wanted) { return d.view < wanted; });
    return place != drawings.end() && place->view == view ? place : nullptr;
}

const DrawnAttribute* FindDrawnAttribute(const Drawing& drawing, std::string_view name,
                                         std::string_view value) noexcept {
    const auto key = [](const DrawnAttribute& a) { return std::pair(a.name.View(), a.value.View()); };
    const DrawnAttribute* const place =
        std::lower_bound(drawing.attributes.begin(), drawing.attributes.end(), std::pair(name, value),
                         [&key](const DrawnAttribute& a, const auto& wanted) { return key(a) < wanted; });
    return place != drawing.attributes.end() && key(*place) == std::pair(name, value) ? place : nullptr;
}

const OccurrenceAttributes* FindOccurrence(const ListT<OccurrenceAttributes>& occurrences, Slot path) noexcept {
    const OccurrenceAttributes* const place =
        std::lower_bound(occurrences.begin(), occurrences.end(), path,
                         [](const OccurrenceAttributes& o, Slot wanted) { return o.path < wanted; });
    return place != occurrences.end() && place->path == path ? place : nullptr;
}

}  // namespace Orin::DesignDb
