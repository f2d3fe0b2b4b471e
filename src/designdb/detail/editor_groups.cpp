// Groups and their members.
#include <algorithm>

#include "designdb/detail/editing.h"

namespace Orin::DesignDb {

Memberships With(Memberships memberships, Slot group) {
    if (memberships.first == 0) {
        memberships.first = group;
    } else {
        memberships.further.Append(group);
    }
    return memberships;
}

Memberships Without(Memberships memberships, Slot group) {
    if (memberships.first != group) {
        memberships.further = Without(std::move(memberships.further), group);
    } else if (memberships.further.IsEmpty()) {
        memberships.first = 0;
    } else {
        memberships.first = memberships.further[0];
        memberships.further.Erase(0);
    }
    return memberships;
}

namespace {

// Calls visit(record, field) for an object that can be a member, `field` being its memberships.
template <class Visit>
Result VisitMember(const Graph& graph, Location at, Visit&& visit) {
    return VisitRecord(
        graph, at, Result(EErrorCode::ObjectNotFound), [&]<class Record>(const Record& record) -> Result {
            if constexpr (std::is_same_v<Record, GroupRecord>) {
                return visit(record, &Record::memberships);
            } else if constexpr (std::is_same_v<Record, CompRecord> || std::is_same_v<Record, NetRecord> ||
                                 std::is_same_v<Record, BusRecord>) {
                return visit(record, &Record::groups);
            } else {
                return EErrorCode::InvalidArgument;
            }
        });
}

Result AddMemberAt(Edit& edit, const Index& group, const Index& object, std::optional<unsigned> position) {
    const Graph& graph = edit.Now();
    const Slot slot = graph.SlotOf<GroupRecord>(group);
    if (Result r = PermitRecord<GroupRecord>(edit, slot); !r) return r;
    const Location at = graph.Locate(object);
    return VisitMember(graph, at, [&]<class Record>(const Record& record, Memberships Record::*field) -> Result {
        const GroupRecord& owner = *graph.Find<GroupRecord>(slot);
        const bool itself = std::is_same_v<Record, GroupRecord> && at.slot == slot;
        if (record.block != owner.block || itself) return EErrorCode::InvalidArgument;
        if (IsMember(record.*field, slot)) return EErrorCode::AlreadyExists;
        const std::size_t last = owner.members.Size();
        const std::size_t place = position ? std::min<std::size_t>(*position, last) : last;
        if (!edit.Begin(Event::Connected(group, object, EEventsConnectivityChange::JoinGroup))) return {};
        Memberships memberships = With(record.*field, slot);
        edit.Do().InsertMember(slot, place, object.Value());
        edit.Do().Set(at.slot, field, std::move(memberships));
        return {};
    });
}

}  // namespace

Result Editor::AddGroup(const Index& owner, const GroupSpec& spec, Index& group) {
    Place place;
    Result result = Run(m_impl, [&](Edit& edit) -> Result {
        const Graph& graph = edit.Now();
        const Slot ownerGroup = graph.SlotOf<GroupRecord>(owner);
        const Slot block =
            ownerGroup != 0 ? graph.Find<GroupRecord>(ownerGroup)->block : graph.SlotOf<BlockRecord>(owner);
        Result permitted =
            ownerGroup != 0 ? PermitRecord<GroupRecord>(edit, ownerGroup) : PermitRecord<BlockRecord>(edit, block);
        if (!permitted) return permitted;
        if (Result r = edit.Reserve<GroupRecord>(place, spec.index); !r) return r;
        if (!edit.Begin(Event::Add(owner, place->second, EEventsAdd::Group))) return {};
        GroupRecord record;
        record.index = place->second;
        record.type = spec.type;
        record.block = block;
        record.ownerGroup = ownerGroup;
        record.name = spec.name;
        edit.Do().Put(place->first, std::move(record));
        if (ownerGroup != 0) {
            edit.Do().Enter<GroupRecord>(
                ownerGroup, [](GroupRecord& r) -> SlotSet& { return r.groups; }, place->first);
        } else {
            edit.Do().Enter<BlockRecord>(
                block, [](BlockRecord& r) -> SlotSet& { return r.groups; }, place->first);
        }
        return {};
    });
    if (result) group = place->second;
    return result;
}

Result Editor::SetGroupType(const Index& group, EGroupType type) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Slot slot = edit.Now().SlotOf<GroupRecord>(group);
        if (Result r = PermitRecord<GroupRecord>(edit, slot); !r) return r;
        if (edit.Begin(Event::Change(group, EEventsChange::Type))) edit.Do().Set(slot, &GroupRecord::type, type);
        return {};
    });
}

Result Editor::AddMember(const Index& group, const Index& object) {
    return Run(m_impl, [&](Edit& edit) { return AddMemberAt(edit, group, object, std::nullopt); });
}

Result Editor::AddMember(const Index& group, const Index& object, unsigned position) {
    return Run(m_impl, [&](Edit& edit) { return AddMemberAt(edit, group, object, position); });
}

Result Editor::RemoveMember(const Index& group, const Index& object) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Graph& graph = edit.Now();
        const Slot slot = graph.SlotOf<GroupRecord>(group);
        if (Result r = PermitRecord<GroupRecord>(edit, slot); !r) return r;
        const Location at = graph.Locate(object);
        return VisitMember(graph, at, [&]<class Record>(const Record& record, Memberships Record::*field) -> Result {
            if (!IsMember(record.*field, slot)) return EErrorCode::NoValue;
            const std::size_t position = graph.Find<GroupRecord>(slot)->members.Find(object.Value());
            if (!edit.Begin(Event::Connected(group, object, EEventsConnectivityChange::LeaveGroup))) return {};
            Memberships memberships = Without(record.*field, slot);
            edit.Do().EraseMember(slot, position, object.Value());
            edit.Do().Set(at.slot, field, std::move(memberships));
            return {};
        });
    });
}

Result Editor::MoveMember(const Index& group, const Index& object, unsigned position) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Graph& graph = edit.Now();
        const Slot slot = graph.SlotOf<GroupRecord>(group);
        if (Result r = PermitRecord<GroupRecord>(edit, slot); !r) return r;
        const ChunkedSequence<std::uint64_t>& members = graph.Find<GroupRecord>(slot)->members;
        const std::size_t before = members.Find(object.Value());
        if (before == members.NotFound) return EErrorCode::NoValue;
        const std::size_t after = std::min<std::size_t>(position, members.Size() - 1);
        if (!edit.Begin(Event::Connected(group, object, EEventsConnectivityChange::Reorder))) return {};
        edit.Do().EraseMember(slot, before, object.Value());
        edit.Do().InsertMember(slot, after, object.Value());
        return {};
    });
}

}  // namespace Orin::DesignDb
