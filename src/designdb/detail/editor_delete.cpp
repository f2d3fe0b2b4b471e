// Deletions. An object that contains others is emptied first, in a series of edits that happens as a whole; each edit
// is announced by itself, contents before what contains them.
#include <algorithm>

#include "designdb/detail/editing.h"

namespace Orin::DesignDb {

namespace {

// Takes an object out of the groups of which it is a member.
void LeaveGroups(Edit& edit, const Memberships& memberships, const Index& object) {
    ForEach(Memberships(memberships), [&](Slot slot) {
        const GroupRecord* const group = edit.Now().Find<GroupRecord>(slot);
        if (group == nullptr) return;
        const std::size_t position = group->members.Find(object.Value());
        if (position != group->members.NotFound) edit.Do().EraseMember(slot, position, object.Value());
    });
}

// A free item of a view.
template <class Record>
Result DeleteFreeItem(Edit& edit, Slot slot) {
    if (Result r = PermitRecord<Record>(edit, slot, ELockScope::Whole); !r) return r;
    const Record& record = *edit.Now().Find<Record>(slot);
    const Slot view = record.view;
    const Index parent = ViewOwnerIndex(edit.Now(), *edit.Now().Find<ViewRecord>(view));
    if (!edit.Begin(Event::Delete(parent, record.index, EEventsDelete::GraphicItem))) return {};
    constexpr auto items = [](ViewRecord& r) -> SlotSet& {
        return r.items[static_cast<std::size_t>(ItemTraits<decltype(Record::data)>::Item)];
    };
    edit.Do().Leave<ViewRecord>(view, items, slot);
    edit.Do().Take<Record>(slot);
    return {};
}

Result DeletePiece(Edit& edit, Slot slot) {
    if (Result r = PermitRecord<PieceRecord>(edit, slot, ELockScope::Whole); !r) return r;
    const Graph& graph = edit.Now();
    const PieceRecord& piece = *graph.Find<PieceRecord>(slot);
    const Slot net = piece.net;
    const Slot view = piece.view;
    if (!edit.Begin(Event::Delete(graph.Find<NetRecord>(net)->index, piece.index, EEventsDelete::NetQuill))) return {};
    const ListT<NetPiece>& pieces = graph.Find<NetRecord>(net)->pieces;
    const NetPiece* const own =
        std::find_if(pieces.begin(), pieces.end(), [slot](const NetPiece& other) { return other.piece == slot; });
    edit.Do().EraseAt(net, &NetRecord::pieces, static_cast<std::size_t>(own - pieces.begin()));
    edit.Do().Leave<ViewRecord>(
        view, [](ViewRecord& r) -> SlotSet& { return r.pieces; }, slot);
    edit.Do().Take<PieceRecord>(slot);
    return {};
}

// The kinds of contents of one object that have to go before it does, as locations from the first to the last.
using Contents = std::vector<Location>;

void AddViewContents(const Graph& graph, Slot view, Contents& contents) {
    const ViewRecord* const record = graph.Find<ViewRecord>(view);
    if (record == nullptr) return;
    constexpr EObjectType kinds[ItemKinds] = {EObjectType::Line, EObjectType::Rect, EObjectType::Arc,
                                              EObjectType::Circle, EObjectType::Text};
    for (std::size_t kind = 0; kind < ItemKinds; ++kind)
        record->items[kind].ForEach([&](Slot slot) { contents.push_back({kinds[kind], slot}); });
    record->pieces.ForEach([&](Slot slot) { contents.push_back({EObjectType::NetQuill, slot}); });
}

// What stands directly in an object.
Contents ContentsOf(const Graph& graph, Location at) {
    Contents contents;
    const auto add = [&contents](EObjectType kind) {
        return [&contents, kind](Slot slot) { contents.push_back({kind, slot}); };
    };
    if (at.kind == EObjectType::Block) {
        const BlockRecord& block = *graph.Find<BlockRecord>(at.slot);
        block.groups.ForEach(add(EObjectType::Group));
        block.comps.ForEach(add(EObjectType::Comp));
        block.nets.ForEach(add(EObjectType::Net));
        block.buses.ForEach(add(EObjectType::Bus));
    } else if (at.kind == EObjectType::Group) {
        const GroupRecord& group = *graph.Find<GroupRecord>(at.slot);
        group.groups.ForEach(add(EObjectType::Group));
        AddViewContents(graph, group.view, contents);
    } else if (at.kind == EObjectType::Comp) {
        const CompRecord& comp = *graph.Find<CompRecord>(at.slot);
        for (const Slot pin : comp.pins)
            contents.push_back({EObjectType::Pin, pin});
        AddViewContents(graph, comp.view, contents);
    } else if (at.kind == EObjectType::Net) {
        for (const NetPiece& piece : graph.Find<NetRecord>(at.slot)->pieces)
            contents.push_back({EObjectType::NetQuill, piece.piece});
    }
    return contents;
}

Result DeletePin(Edit& edit, Slot slot) {
    if (Result r = PermitRecord<PinRecord>(edit, slot, ELockScope::Whole); !r) return r;
    const Graph& graph = edit.Now();
    const PinRecord& pin = *graph.Find<PinRecord>(slot);
    const Slot comp = pin.comp;
    const Slot net = graph.Find<NetRecord>(pin.net) != nullptr ? pin.net : 0;
    if (!edit.Begin(Event::Delete(graph.Find<CompRecord>(comp)->index, pin.index, EEventsDelete::Pin))) return {};
    if (net != 0)
        edit.Do().Leave<NetRecord>(
            net, [](NetRecord& r) -> SlotSet& { return r.pins; }, slot);
    const ListT<Slot>& pins = graph.Find<CompRecord>(comp)->pins;
    const std::size_t position = static_cast<std::size_t>(std::find(pins.begin(), pins.end(), slot) - pins.begin());
    edit.Do().EraseAt(comp, &CompRecord::pins, position);
    edit.Do().Take<PinRecord>(slot);
    return {};
}

Result DeleteComp(Edit& edit, Slot slot) {
    if (Result r = PermitRecord<CompRecord>(edit, slot, ELockScope::Whole); !r) return r;
    const Graph& graph = edit.Now();
    const CompRecord comp = *graph.Find<CompRecord>(slot);
    if (!edit.Begin(Event::Delete(graph.Find<BlockRecord>(comp.block)->index, comp.index, EEventsDelete::Comp)))
        return {};
    LeaveGroups(edit, comp.groups, comp.index);
    if (comp.view != 0) edit.Do().Take<ViewRecord>(comp.view);
    edit.Do().Leave<BlockRecord>(
        comp.block, [](BlockRecord& r) -> SlotSet& { return r.comps; }, slot);
    edit.Do().Take<CompRecord>(slot);
    return {};
}

Result DeleteNet(Edit& edit, Slot slot) {
    if (Result r = PermitRecord<NetRecord>(edit, slot, ELockScope::Whole); !r) return r;
    const Graph& graph = edit.Now();
    const NetRecord net = *graph.Find<NetRecord>(slot);
    if (!edit.Begin(Event::Delete(graph.Find<BlockRecord>(net.block)->index, net.index, EEventsDelete::Net))) return {};
    LeaveGroups(edit, net.groups, net.index);
    net.pins.ForEach([&](Slot pin) { edit.Do().Set(pin, &PinRecord::net, 0); });
    net.buses.ForEach([&](Slot bus) {
        edit.Do().Leave<BusRecord>(
            bus, [](BusRecord& r) -> SlotSet& { return r.nets; }, slot);
    });
    edit.Do().Leave<BlockRecord>(
        net.block, [](BlockRecord& r) -> SlotSet& { return r.nets; }, slot);
    edit.Do().Take<NetRecord>(slot);
    return {};
}

Result DeleteBus(Edit& edit, Slot slot) {
    if (Result r = PermitRecord<BusRecord>(edit, slot, ELockScope::Whole); !r) return r;
    const Graph& graph = edit.Now();
    const BusRecord bus = *graph.Find<BusRecord>(slot);
    if (!edit.Begin(Event::Delete(graph.Find<BlockRecord>(bus.block)->index, bus.index, EEventsDelete::Bus))) return {};
    LeaveGroups(edit, bus.groups, bus.index);
    bus.nets.ForEach([&](Slot net) {
        edit.Do().Leave<NetRecord>(
            net, [](NetRecord& r) -> SlotSet& { return r.buses; }, slot);
    });
    edit.Do().Leave<BlockRecord>(
        bus.block, [](BlockRecord& r) -> SlotSet& { return r.buses; }, slot);
    edit.Do().Take<BusRecord>(slot);
    return {};
}

// The members lose their membership. What they show on the group's view stays with them and leads nowhere, as the
// view's slot is never given again.
Result DeleteGroup(Edit& edit, Slot slot) {
    if (Result r = PermitRecord<GroupRecord>(edit, slot, ELockScope::Whole); !r) return r;
    const Graph& graph = edit.Now();
    const GroupRecord group = *graph.Find<GroupRecord>(slot);
    const GroupRecord* const owner = graph.Find<GroupRecord>(group.ownerGroup);
    const Index parent = owner != nullptr ? owner->index : graph.Find<BlockRecord>(group.block)->index;
    if (!edit.Begin(Event::Delete(parent, group.index, EEventsDelete::Group))) return {};
    LeaveGroups(edit, group.memberships, group.index);
    group.members.ForEach([&](std::uint64_t member) {
        const Location at = graph.Locate(Index(member));
        VisitRecord(graph, at, 0, [&]<class Record>(const Record& record) {
            if constexpr (requires { record.memberships; }) {
                edit.Do().Set(at.slot, &Record::memberships, Without(record.memberships, slot));
            } else if constexpr (std::is_same_v<Record, CompRecord> || std::is_same_v<Record, NetRecord> ||
                                 std::is_same_v<Record, BusRecord>) {
                edit.Do().Set(at.slot, &Record::groups, Without(record.groups, slot));
            }
            return 0;
        });
    });
    if (group.view != 0) edit.Do().Take<ViewRecord>(group.view);
    if (owner != nullptr) {
        edit.Do().Leave<GroupRecord>(
            group.ownerGroup, [](GroupRecord& r) -> SlotSet& { return r.groups; }, slot);
    } else {
        edit.Do().Leave<BlockRecord>(
            group.block, [](BlockRecord& r) -> SlotSet& { return r.groups; }, slot);
    }
    edit.Do().Take<GroupRecord>(slot);
    return {};
}

Result DeleteBlock(Edit& edit, Slot slot) {
    if (Result r = PermitRecord<BlockRecord>(edit, slot, ELockScope::Whole); !r) return r;
    if (edit.Begin(Event::Delete({}, edit.Now().Find<BlockRecord>(slot)->index, EEventsDelete::Block)))
        edit.Do().Take<BlockRecord>(slot);
    return {};
}

bool IsThere(const Graph& graph, Location at) {
    return VisitRecord(graph, at, false, [](const auto&) { return true; });
}

// One edit: deletes an object that contains nothing; ObjectInUse when it does, as a callback may have put something in.
Result DeleteAlone(Edit& edit, Location at) {
    if (IsThere(edit.Now(), at) && !ContentsOf(edit.Now(), at).empty()) return EErrorCode::ObjectInUse;
    switch (at.kind) {
        case EObjectType::Block:
            return DeleteBlock(edit, at.slot);
        case EObjectType::Group:
            return DeleteGroup(edit, at.slot);
        case EObjectType::Comp:
            return DeleteComp(edit, at.slot);
        case EObjectType::Pin:
            return DeletePin(edit, at.slot);
        case EObjectType::Net:
            return DeleteNet(edit, at.slot);
        case EObjectType::Bus:
            return DeleteBus(edit, at.slot);
        case EObjectType::NetQuill:
            return DeletePiece(edit, at.slot);
        case EObjectType::Line:
            return DeleteFreeItem<LineRecord>(edit, at.slot);
        case EObjectType::Rect:
            return DeleteFreeItem<RectRecord>(edit, at.slot);
        case EObjectType::Arc:
            return DeleteFreeItem<ArcRecord>(edit, at.slot);
        case EObjectType::Circle:
            return DeleteFreeItem<CircleRecord>(edit, at.slot);
        case EObjectType::Text:
            return DeleteFreeItem<TextRecord>(edit, at.slot);
        default:
            return EErrorCode::InvalidArgument;
    }
}

// Deletes the object and all in it. Other clients' edits are shut out from the first check to the last deletion;
// objects that the client itself deletes meanwhile, in a callback, are passed over.
Result DeleteWhole(Session& session, EObjectType kind, const Index& object) {
    const Snapshot& snapshot = *session.snapshot;
    const auto contents = [&](Location at) {
        const std::shared_lock lock(snapshot.lock);
        return IsThere(snapshot.graph, at) ? ContentsOf(snapshot.graph, at) : Contents();
    };
    const auto isThere = [&](Location at) {
        const std::shared_lock lock(snapshot.lock);
        return IsThere(snapshot.graph, at);
    };
    // How often an object is emptied again into which callbacks put something; then the deletion fails.
    unsigned refills = 100;
    try {
        EditSeries series(session);
        if (!series.Begun()) return series.Begun();
        Location root;
        {
            const std::shared_lock lock(snapshot.lock);
            root = snapshot.graph.Locate(object);
        }
        if (root.kind != kind) return series.Finish(EErrorCode::ObjectNotFound);
        // Each level holds what is left to delete of one object's contents, in order; the object itself goes when its
        // level is empty.
        struct Level {
            Location at;
            Contents contents;
            std::size_t next = 0;
        };
        std::vector<Level> levels{{root, contents(root), 0}};
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.next < level.contents.size()) {
                const Location below = level.contents[level.next++];
                levels.push_back({below, contents(below), 0});
                continue;
            }
            const Location at = level.at;
            levels.pop_back();
            if (!isThere(at)) continue;
            Result result = Perform(session, EditRight::Free, [&](Edit& edit) { return DeleteAlone(edit, at); });
            if (result.GetErrorCode() == static_cast<int>(EErrorCode::ObjectInUse) && refills-- != 0) {
                levels.push_back({at, contents(at), 0});
                continue;
            }
            if (!result) return series.Finish(std::move(result));
        }
        return series.Finish({});
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

template <class ImplPointer>
Result DeleteWhole(const ImplPointer& impl, EObjectType kind, const Index& object) {
    return impl ? DeleteWhole(*impl->session, kind, object) : Result(EErrorCode::NotConnected);
}

}  // namespace

Result Editor::DeleteBlock(const Index& block) {
    return DeleteWhole(m_impl, EObjectType::Block, block);
}
Result Editor::DeleteComp(const Index& comp) {
    return DeleteWhole(m_impl, EObjectType::Comp, comp);
}
Result Editor::DeleteNet(const Index& net) {
    return DeleteWhole(m_impl, EObjectType::Net, net);
}
Result Editor::DeleteGroup(const Index& group) {
    return DeleteWhole(m_impl, EObjectType::Group, group);
}

Result Editor::DeletePin(const Index& pin) {
    return Run(m_impl,
               [&](Edit& edit) -> Result { return DesignDb::DeletePin(edit, edit.Now().SlotOf<PinRecord>(pin)); });
}

Result Editor::DeleteBus(const Index& bus) {
    return Run(m_impl,
               [&](Edit& edit) -> Result { return DesignDb::DeleteBus(edit, edit.Now().SlotOf<BusRecord>(bus)); });
}

Result Editor::DeleteItem(const Index& item) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Location at = edit.Now().Locate(item);
        if (!at) return EErrorCode::ObjectNotFound;
        switch (at.kind) {
            case EObjectType::NetQuill:
            case EObjectType::Line:
            case EObjectType::Rect:
            case EObjectType::Arc:
            case EObjectType::Circle:
            case EObjectType::Text:
                return DeleteAlone(edit, at);
            default:
                return EErrorCode::InvalidArgument;
        }
    });
}

}  // namespace Orin::DesignDb
