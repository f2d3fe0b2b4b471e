// The faces of objects: what handles point at.
//
// A face is made when a client asks for an object and lives as long as a handle names it. It holds the session, the
// slot and the index, so a read is a look into the graph, and it goes on naming its object when records are exchanged.
#pragma once

#include <mutex>
#include <new>
#include <shared_mutex>

#include "designdb/detail/faults.h"
#include "designdb/detail/locking.h"

struct Orin::ObjectAccess {
    static Index Identity(const IObject& object) noexcept { return object.Identity(); }
};

namespace Orin::DesignDb {

// Runs a read of a session's graph: `read(graph)` with the graph held still.
template <class Read>
Result ReadGraph(const char* operation, const Index& object, const SessionRef& session, Read&& read) {
    if (const int code = Fault(operation, object)) return Result(code);
    try {
        const std::shared_lock lock(session->snapshot->lock);
        return read(session->snapshot->graph);
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

template <class Interface, class RecordType>
class Face : public Interface {
public:
    using Record = RecordType;

    Result GetName(String& name) const override {
        return Read("IObject::GetName", [&](const Graph&, const Record& record) -> Result {
            if constexpr (requires { record.name; }) {
                name = record.name;
                return {};
            } else {
                static_cast<void>(record);
                static_cast<void>(name);
                return EErrorCode::NoValue;
            }
        });
    }

    // The index is the face's own and stays readable after the object was deleted.
    Result GetIndex(Index& index) const override {
        if (const int code = Fault("IObject::GetIndex", m_index)) return Result(code);
        index = m_index;
        return {};
    }

    Result IsValid() const override {
        return Read("IObject::IsValid", [](const Graph&, const Record&) { return Result(); });
    }

protected:
    Face(const SessionRef& session, Slot slot, const Index& index) noexcept
        : m_session(session), m_index(index), m_slot(slot) {}

    // `read(graph, record)` with the graph held still; ObjectNotFound when the object is gone.
    template <class Function>
    Result Read(const char* operation, Function&& read) const {
        return ReadGraph(operation, m_index, m_session, [&](const Graph& graph) -> Result {
            const Record* const record = Find(graph);
            return record != nullptr ? read(graph, *record) : Result(EErrorCode::ObjectNotFound);
        });
    }

    const Record* Find(const Graph& graph) const noexcept {
        // A deleted object stays deleted for its handles, also when a new one is given its index: slots are never
        // given again, and only taking the deletion back fills this one.
        return graph.Find<Record>(m_slot);
    }

    // A copy of the attribute's value.
    static Result ReadAttribute(const ListAttribute& attributes, const String& name, EAttributeType type,
                                String& value) {
        const Attribute* const attribute = FindAttribute(attributes, name.View(), type);
        if (attribute == nullptr) return EErrorCode::AttributeNotFound;
        value = attribute->value;
        return {};
    }

    virtual LockKey Key() const noexcept { return {Record::Kind, m_slot, 0}; }
    // Whether the object stands where the handle found it.
    virtual bool Stands(const Graph&, const Record&) const noexcept { return true; }
    virtual const char* LockOperation(ELockScope) const noexcept { return "LockerT::Lock"; }

    const SessionRef m_session;
    const Index m_index;
    const Slot m_slot;

private:
    Result AcquireLock(ELockScope scope, RefPtr<LockToken>& token) const override {
        if (const int code = Fault(LockOperation(scope), m_index)) return Result(code);
        return AcquireLocks(m_session, scope, token, [this](const Graph& graph, LockRequests& requests) -> Result {
            const Record* const record = Find(graph);
            if (record == nullptr || !Stands(graph, *record)) return EErrorCode::ObjectNotFound;
            requests.push_back({ChainOf(graph, Key()), m_index, false});
            return {};
        });
    }
    Index Identity() const noexcept override { return m_index; }
    void OnUnreferenced() const noexcept override { delete this; }
};

// ---- Making faces; the caller holds the graph still, and the record is there. ----

RefPtr<const IBlock> MakeBlock(const SessionRef& session, const Graph& graph, Slot slot);
RefPtr<const IComp> MakeComp(const SessionRef& session, const Graph& graph, Slot slot, const PathNode* place = nullptr);
inline RefPtr<const IComp> MakeDefinition(const SessionRef& session, const Graph& graph, Slot slot) {
    return MakeComp(session, graph, slot);
}
RefPtr<const IPin> MakePin(const SessionRef& session, const Graph& graph, Slot slot);
RefPtr<const INet> MakeNet(const SessionRef& session, const Graph& graph, Slot slot);
RefPtr<const IBus> MakeBus(const SessionRef& session, const Graph& graph, Slot slot);
RefPtr<const IGroup> MakeGroup(const SessionRef& session, const Graph& graph, Slot slot);
RefPtr<const IConfig> MakeConfig(const SessionRef& session, const Graph& graph, Slot slot);
RefPtr<const INetQuill> MakePiece(const SessionRef& session, const Graph& graph, Slot slot);
RefPtr<const IPath> MakePath(const SessionRef& session, const PathNode& place);
RefPtr<const ISnapshot> MakeSnapshot(const SessionRef& session);
RefPtr<const IBlockViewQuill> MakeBlockView(const SessionRef& session, const Graph& graph, Slot group);
RefPtr<const ICompViewQuill> MakeCompView(const SessionRef& session, const Graph& graph, Slot comp);

// The session that a snapshot's handle acts for, or null when it is of another database.
const SessionRef* SessionOf(const ISnapshot& snapshot) noexcept;

// The groups of one of the types of which an object is a member.
ListT<GroupInfo> ListGroups(const Graph& graph, const Memberships& memberships, const GroupTypes& types);

// Objects by ascending slot: `above` gives the next slot, 0 at the end.
template <class Record, class Interface>
class SlotSource final : public IterationSource {
public:
    using Above = Slot (*)(const Graph& graph, Slot parent, Slot last);
    using Make = RefPtr<const Interface> (*)(const SessionRef& session, const Graph& graph, Slot slot);
    using Accept = bool (*)(const Record& record, std::uint32_t filter);

    SlotSource(const SessionRef& session, Slot parent, Above above, Make make, Accept accept = nullptr,
               std::uint32_t filter = 0)
        : m_session(session), m_parent(parent), m_filter(filter), m_above(above), m_make(make), m_accept(accept) {}

    RefPtr<const IObject> Next() override {
        const std::shared_lock lock(m_session->snapshot->lock);
        const Graph& graph = m_session->snapshot->graph;
        const Slot next = NextSlot(graph, m_last);
        RefPtr<const IObject> made;
        if (next != 0) made = m_make(m_session, graph, next);
        m_last = next != 0 ? next : End;
        return made;
    }

    Result GetCount(int& count) const override {
        const std::shared_lock lock(m_session->snapshot->lock);
        const Graph& graph = m_session->snapshot->graph;
        int counted = 0;
        for (Slot slot = NextSlot(graph, 0); slot != 0; slot = NextSlot(graph, slot))
            ++counted;
        count = counted;
        return {};
    }

    RefPtr<IterationSource> Clone() const override { return RefPtr<IterationSource>(new SlotSource(*this, m_last)); }

private:
    static constexpr Slot End = 0xFFFFFFFF;

    SlotSource(const SlotSource& other, Slot last)
        : SlotSource(other.m_session, other.m_parent, other.m_above, other.m_make, other.m_accept, other.m_filter) {
        m_last = last;
    }

    Slot NextSlot(const Graph& graph, Slot slot) const {
        if (slot == End) return 0;
        for (;;) {
            slot = m_above(graph, m_parent, slot);
            if (slot == 0) return 0;
            const Record* const record = graph.Find<Record>(slot);
            if (record != nullptr && (m_accept == nullptr || m_accept(*record, m_filter))) return slot;
        }
    }

    SessionRef m_session;
    Slot m_parent;
    std::uint32_t m_filter;
    Slot m_last = 0;
    Above m_above;
    Make m_make;
    Accept m_accept;
};

// For SlotSource: the slots of a set of the record at `parent`.
template <class Record, SlotSet Record::*Set>
Slot AboveIn(const Graph& graph, Slot parent, Slot last) {
    const Record* const record = graph.Find<Record>(parent);
    return record != nullptr ? (record->*Set).Above(last) : 0;
}

// For SlotSource: whether a component is of one of the types, or of any when there are none.
inline bool BearsType(const CompRecord& comp, std::uint32_t types) {
    return types == 0 || (comp.types.Bits() & types) != 0;
}

// Objects of a list of slots as it was when the iteration began.
template <class Record, class Interface>
class ListSource final : public IterationSource {
public:
    using Make = RefPtr<const Interface> (*)(const SessionRef& session, const Graph& graph, Slot slot);

    ListSource(const SessionRef& session, ListT<Slot> slots, Make make)
        : m_session(session), m_slots(std::move(slots)), m_make(make) {}

    RefPtr<const IObject> Next() override {
        const std::shared_lock lock(m_session->snapshot->lock);
        const Graph& graph = m_session->snapshot->graph;
        while (m_position < m_slots.Count()) {
            const Slot slot = m_slots[m_position];
            RefPtr<const IObject> made;
            if (graph.Find<Record>(slot) != nullptr) made = m_make(m_session, graph, slot);
            ++m_position;
            if (made) return made;
        }
        return {};
    }

    Result GetCount(int& count) const override {
        const std::shared_lock lock(m_session->snapshot->lock);
        int counted = 0;
        for (const Slot slot : m_slots)
            if (m_session->snapshot->graph.Find<Record>(slot) != nullptr) ++counted;
        count = counted;
        return {};
    }

    RefPtr<IterationSource> Clone() const override {
        RefPtr<ListSource> clone(new ListSource(m_session, m_slots, m_make));
        clone->m_position = m_position;
        return clone;
    }

private:
    SessionRef m_session;
    ListT<Slot> m_slots;
    unsigned m_position = 0;
    Make m_make;
};

// ---- Edits through write handles: they need the lock that the handle stands for. ----

// `at` names the object; `place` is that of a component at a place, else null.
Result SetAttributeLocked(Session& session, Location at, const PathNode* place, const String& name, const String& value,
                          EAttributeType type);
Result RemoveAttributeLocked(Session& session, Location at, const PathNode* place, const String& name,
                             EAttributeType type);
Result SetNameLocked(Session& session, Location at, const String& name);

}  // namespace Orin::DesignDb
