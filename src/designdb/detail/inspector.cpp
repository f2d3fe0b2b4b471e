#include "designdb/inspector.h"

#include <algorithm>
#include <shared_mutex>
#include <vector>

#include "designdb/detail/editing.h"

namespace Orin::DesignDb {

class Inspector::Impl {
public:
    explicit Impl(const SessionRef& ref) : session(ref) {}
    SessionRef session;
};

Inspector::Inspector() noexcept = default;
Inspector::Inspector(Inspector&&) noexcept = default;
Inspector& Inspector::operator=(Inspector&&) noexcept = default;
Inspector::~Inspector() = default;

Result Inspector::Open(Inspector& inspector, const ContainerT<const ISnapshot>& snapshot) {
    const SessionRef* const session = snapshot ? SessionOf(*snapshot) : nullptr;
    if (session == nullptr) return EErrorCode::InvalidArgument;
    try {
        inspector.m_impl = std::make_unique<Impl>(*session);
        return {};
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

namespace {

// `read(graph)` with the graph held still.
template <class ImplPointer, class Read>
Result Look(const ImplPointer& impl, Read&& read) {
    if (!impl) return EErrorCode::NotConnected;
    try {
        const std::shared_lock lock(impl->session->snapshot->lock);
        return read(impl->session->snapshot->graph);
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

// The index of the group or component whose view it is; empty when that is gone.
Index OwnerOf(const Graph& graph, Slot view) {
    const ViewRecord* const record = graph.Find<ViewRecord>(view);
    if (record == nullptr) return {};
    if (const GroupRecord* const group = graph.Find<GroupRecord>(record->group)) return group->index;
    const CompRecord* const comp = graph.Find<CompRecord>(record->comp);
    return comp != nullptr ? comp->index : Index();
}

// The way down to the place, root first. False when the place, or the component at it, does not exist, or when a block
// stands on the way twice: such a place cannot be reached.
bool WayTo(const Graph& graph, const PathNode& place, const CompRecord& comp, std::vector<Index>& way) {
    if (!Exists(graph, place) || BlockAt(graph, place) != comp.block) return false;
    std::vector<Slot> blocks;
    way.resize(place.depth);
    for (const PathNode* node = &place; node != nullptr; node = node->parent) {
        blocks.push_back(BlockAt(graph, *node));
        if (node->parent != nullptr) way[node->depth - 1] = graph.Find<CompRecord>(node->comp)->index;
    }
    std::sort(blocks.begin(), blocks.end());
    return std::adjacent_find(blocks.begin(), blocks.end()) == blocks.end();
}

}  // namespace

Result Inspector::GetAttributes(const Index& object, ListAttribute& attributes) const {
    return Look(m_impl, [&](const Graph& graph) -> Result {
        if (object.IsEmpty()) {
            attributes = graph.attributes;
            return {};
        }
        return VisitRecord(graph, graph.Locate(object), Result(EErrorCode::ObjectNotFound),
                           [&]<class Record>(const Record& record) -> Result {
                               if constexpr (requires { record.attributes; }) {
                                   attributes = record.attributes;
                                   return {};
                               } else {
                                   return EErrorCode::ObjectNotFound;
                               }
                           });
    });
}

Result Inspector::GetOccurrences(const Index& comp, ListT<OccurrenceInfo>& occurrences) const {
    return Look(m_impl, [&](const Graph& graph) -> Result {
        const CompRecord* const record = graph.Find<CompRecord>(comp);
        if (record == nullptr) return EErrorCode::ObjectNotFound;
        ListT<OccurrenceInfo> found;
        for (const OccurrenceAttributes& occurrence : record->occurrences) {
            const PathNode* const place = m_impl->session->Project().paths.Find(occurrence.path);
            std::vector<Index> way;
            if (place == nullptr || !WayTo(graph, *place, *record, way)) continue;
            found.Append({graph.Find<ConfigRecord>(place->config)->index, ListT<Index>(way), occurrence.attributes});
        }
        occurrences = std::move(found);
        return {};
    });
}

Result Inspector::GetMemberships(const Index& object, ListT<GroupInfo>& groups) const {
    return Look(m_impl, [&](const Graph& graph) -> Result {
        return VisitRecord(graph, graph.Locate(object), Result(EErrorCode::ObjectNotFound),
                           [&]<class Record>(const Record& record) -> Result {
                               if constexpr (std::is_same_v<Record, GroupRecord>) {
                                   groups = ListGroups(graph, record.memberships, {});
                                   return {};
                               } else if constexpr (std::is_same_v<Record, CompRecord> ||
                                                    std::is_same_v<Record, NetRecord> ||
                                                    std::is_same_v<Record, BusRecord>) {
                                   groups = ListGroups(graph, record.groups, {});
                                   return {};
                               } else {
                                   return EErrorCode::ObjectNotFound;
                               }
                           });
    });
}

Result Inspector::GetDrawings(const Index& object, ListT<DrawingInfo>& drawings) const {
    return Look(m_impl, [&](const Graph& graph) -> Result {
        return VisitRecord(graph, graph.Locate(object), Result(EErrorCode::ObjectNotFound),
                           [&]<class Record>(const Record& record) -> Result {
                               if constexpr (requires { record.drawings; }) {
                                   ListT<DrawingInfo> found;
                                   for (const Drawing& drawing : record.drawings) {
                                       DrawingInfo info{OwnerOf(graph, drawing.view), drawing.body, {}, {}};
                                       if (info.view.IsEmpty()) continue;
                                       if (!drawing.label.IsEmpty()) info.label = drawing.label.Front();
                                       for (const DrawnAttribute& attribute : drawing.attributes)
                                           info.attributes.Append({attribute.name, attribute.value, attribute.data});
                                       found.Append(std::move(info));
                                   }
                                   drawings = std::move(found);
                                   return {};
                               } else {
                                   return EErrorCode::ObjectNotFound;
                               }
                           });
    });
}

Result Inspector::GetPieces(const Index& net, ListT<NetPieceInfo>& pieces) const {
    return Look(m_impl, [&](const Graph& graph) -> Result {
        const NetRecord* const record = graph.Find<NetRecord>(net);
        if (record == nullptr) return EErrorCode::ObjectNotFound;
        ListT<NetPieceInfo> found;
        for (const NetPiece& piece : record->pieces) {
            const PieceRecord* const drawn = graph.Find<PieceRecord>(piece.piece);
            const Index view = OwnerOf(graph, piece.view);
            if (drawn != nullptr && !view.IsEmpty()) found.Append({drawn->index, view, drawn->data});
        }
        pieces = std::move(found);
        return {};
    });
}

Result Inspector::GetGroups(const Index& block, ListT<GroupInfo>& groups) const {
    return Look(m_impl, [&](const Graph& graph) -> Result {
        const BlockRecord* const record = graph.Find<BlockRecord>(block);
        if (record == nullptr) return EErrorCode::ObjectNotFound;
        std::vector<Slot> slots;
        const auto collect = [&slots](Slot slot) { slots.push_back(slot); };
        record->groups.ForEach(collect);
        // What is found is looked into in its turn.
        for (std::size_t i = 0; i < slots.size(); ++i)
            graph.Find<GroupRecord>(slots[i])->groups.ForEach(collect);
        std::sort(slots.begin(), slots.end());
        ListT<GroupInfo> found;
        for (const Slot slot : slots) {
            const GroupRecord& group = *graph.Find<GroupRecord>(slot);
            found.Append({group.index, group.name, group.type});
        }
        groups = std::move(found);
        return {};
    });
}

Result Inspector::GetPins(const Index& block, ListT<Index>& pins) const {
    return Look(m_impl, [&](const Graph& graph) -> Result {
        const BlockRecord* const record = graph.Find<BlockRecord>(block);
        if (record == nullptr) return EErrorCode::ObjectNotFound;
        std::vector<Slot> slots;
        record->comps.ForEach([&](Slot comp) {
            const ListT<Slot>& own = graph.Find<CompRecord>(comp)->pins;
            slots.insert(slots.end(), own.begin(), own.end());
        });
        std::sort(slots.begin(), slots.end());
        std::vector<Index> found;
        found.reserve(slots.size());
        for (const Slot slot : slots)
            found.push_back(graph.Find<PinRecord>(slot)->index);
        pins = ListT<Index>(found);
        return {};
    });
}

Result Inspector::GetRippedBus(const Index& ripper, Index& bus) const {
    return Look(m_impl, [&](const Graph& graph) -> Result {
        const CompRecord* const comp = graph.Find<CompRecord>(ripper);
        if (comp == nullptr) return EErrorCode::ObjectNotFound;
        const BusRecord* const found = graph.Find<BusRecord>(comp->rippedBus);
        if (found == nullptr) return EErrorCode::NoValue;
        bus = found->index;
        return {};
    });
}

}  // namespace Orin::DesignDb
