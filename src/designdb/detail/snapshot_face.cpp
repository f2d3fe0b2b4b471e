#include <algorithm>

#include "designdb/detail/face.h"
#include "text/ascii.h"

namespace Orin::DesignDb {

namespace {

// The slots of a table, for iterations over all objects of a kind.
template <class Record>
Slot AboveInTable(const Graph& graph, Slot, Slot last) {
    return graph.Of<Record>().Above(last);
}

// The components of the root blocks of all configurations, in the order of adding.
Slot AboveInRoots(const Graph& graph, Slot, Slot last) {
    Slot next = 0;
    const Table<ConfigRecord>& configs = graph.Of<ConfigRecord>();
    for (Slot config = configs.Above(0); config != 0; config = configs.Above(config)) {
        const BlockRecord* const root = graph.Find<BlockRecord>(configs.Find(config)->root);
        if (root == nullptr) continue;
        const Slot candidate = root->comps.Above(last);
        if (candidate != 0 && (next == 0 || candidate < next)) next = candidate;
    }
    return next;
}

// What resolves indexes for a session.
class Resolver final : public ObjectResolver {
public:
    explicit Resolver(const SessionRef& session) : m_session(session) {}

    Result Resolve(RefPtr<const IObject>& object, EObjectType type, const Index& index) const override {
        return ReadGraph(OperationName(type), index, m_session, [&](const Graph& graph) -> Result {
            switch (type) {
                case EObjectType::Block:
                    return Give<BlockRecord>(object, graph, index, MakeBlock);
                case EObjectType::Bus:
                    return Give<BusRecord>(object, graph, index, MakeBus);
                case EObjectType::Comp:
                    return Give<CompRecord>(object, graph, index, MakeDefinition);
                case EObjectType::Group:
                    return Give<GroupRecord>(object, graph, index, MakeGroup);
                case EObjectType::Net:
                    return Give<NetRecord>(object, graph, index, MakeNet);
                case EObjectType::NetQuill:
                    return Give<PieceRecord>(object, graph, index, MakePiece);
                case EObjectType::Path: {
                    const PathNode* const place = index.GetType() == EObjectType::Path && index.Middle() == 0
                                                      ? m_session->Project().paths.Find(index.Low())
                                                      : nullptr;
                    if (place == nullptr || !Exists(graph, *place)) return EErrorCode::ObjectNotFound;
                    object = MakePath(m_session, *place);
                    return {};
                }
                default:
                    return EErrorCode::InvalidArgument;
            }
        });
    }

private:
    template <class Record, class Make>
    Result Give(RefPtr<const IObject>& object, const Graph& graph, const Index& index, Make&& make) const {
        const Slot slot = graph.SlotOf<Record>(index);
        if (slot == 0) return EErrorCode::ObjectNotFound;
        object = make(m_session, graph, slot);
        return {};
    }

    static const char* OperationName(EObjectType type) noexcept {
        switch (type) {
            case EObjectType::Block:
                return "IUIDManager::GetBlock";
            case EObjectType::Bus:
                return "IUIDManager::GetBus";
            case EObjectType::Comp:
                return "IUIDManager::GetComp";
            case EObjectType::Group:
                return "IUIDManager::GetGroup";
            case EObjectType::Net:
                return "IUIDManager::GetNet";
            case EObjectType::NetQuill:
                return "IUIDManager::GetQuillNet";
            default:
                return "IUIDManager::GetPath";
        }
    }

    SessionRef m_session;
};

class SnapshotFace final : public ISnapshot {
public:
    explicit SnapshotFace(const SessionRef& session) noexcept : m_session(session) {}

    const SessionRef& GetSession() const noexcept { return m_session; }

    Result GetName(String& name) const override {
        if (const int code = Fault("IObject::GetName", Identity())) return Result(code);
        name = m_session->snapshot->name;
        return {};
    }
    Result GetIndex(Index& index) const override {
        if (const int code = Fault("IObject::GetIndex", Identity())) return Result(code);
        index = Identity();
        return {};
    }
    Result IsValid() const override {
        if (const int code = Fault("IObject::IsValid", Identity())) return Result(code);
        const Snapshot& own = *m_session->snapshot;
        const RefPtr<Snapshot> found = m_session->Project().FindSnapshot(own.name.View());
        return found.Get() == &own ? Result() : Result(EErrorCode::ObjectNotFound);
    }

    Result GetAttribute(const String& name, String& value) const override {
        return Read("ISnapshot::GetAttribute", [&](const Graph& graph) -> Result {
            const Attribute* const attribute = FindAttribute(graph.attributes, name.View(), EAttributeType::User);
            if (attribute == nullptr) return EErrorCode::AttributeNotFound;
            value = attribute->value;
            return {};
        });
    }
    Result SetAttribute(const String& name, const String& value) override {
        if (const int code = Fault("ISnapshot::SetAttribute", Identity())) return Result(code);
        return SetAttributeLocked(*m_session, {EObjectType::Snapshot, 0}, nullptr, name, value, EAttributeType::User);
    }
    Result RemoveAttribute(const String& name) override {
        if (const int code = Fault("ISnapshot::RemoveAttribute", Identity())) return Result(code);
        return RemoveAttributeLocked(*m_session, {EObjectType::Snapshot, 0}, nullptr, name, EAttributeType::User);
    }
    Result GetAttributes(ListAttribute& attributes) const override {
        return Read("ISnapshot::GetAttributes", [&](const Graph& graph) -> Result {
            attributes = graph.attributes;
            return {};
        });
    }

    Result GetBlock(ContainerT<const IBlock>& block, const Index& index) const override {
        return Read("ISnapshot::GetBlock", [&](const Graph& graph) -> Result {
            const Slot slot = graph.SlotOf<BlockRecord>(index);
            if (slot == 0) return EErrorCode::ObjectNotFound;
            block = ContainerT<const IBlock>(MakeBlock(m_session, graph, slot));
            return {};
        });
    }
    Result GetIterBlocks(IteratorT<const IBlock>& blocks) const override {
        return Iterate<BlockRecord>("ISnapshot::GetIterBlocks", blocks, AboveInTable<BlockRecord>, MakeBlock);
    }
    Result GetIterConfigs(IteratorT<const IConfig>& configs) const override {
        return Iterate<ConfigRecord>("ISnapshot::GetIterConfigs", configs, AboveInTable<ConfigRecord>, MakeConfig);
    }
    Result GetIterComps(IteratorT<const IComp>& comps, const CompTypes& types) const override {
        return Iterate<CompRecord>("ISnapshot::GetIterComps", comps, AboveInRoots, MakeDefinition, BearsType,
                                   types.Bits());
    }

    Result FindBlock(ListT<BlockInfo>& found, const String& name, const SearchParams& search) const override {
        return Read("ISnapshot::FindBlock", [&](const Graph& graph) -> Result {
            const bool ignoreCase = search.Contains(ESearchParams::IgnoreCase);
            const bool beginning = search.Contains(ESearchParams::Beginning);
            ListT<BlockInfo> matches;
            const Table<BlockRecord>& blocks = graph.Of<BlockRecord>();
            for (Slot slot = blocks.Above(0); slot != 0; slot = blocks.Above(slot)) {
                const BlockRecord& block = *blocks.Find(slot);
                std::string_view candidate = block.name.View();
                if (beginning) candidate = candidate.substr(0, name.Length());
                const bool match =
                    ignoreCase ? Quill::Text::EqualNoCase(candidate, name.View()) : candidate == name.View();
                if (match) matches.Append({block.index, block.name, block.libraryName});
            }
            found = std::move(matches);
            return {};
        });
    }

    Result GetDefaultConfig(ContainerT<const IConfig>& config, const String& name) const override {
        return Read("ISnapshot::GetDefaultConfig", [&](const Graph& graph) -> Result {
            const Table<ConfigRecord>& configs = graph.Of<ConfigRecord>();
            for (Slot slot = configs.Above(0); slot != 0; slot = configs.Above(slot)) {
                if (configs.Find(slot)->name != name) continue;
                config = ContainerT<const IConfig>(MakeConfig(m_session, graph, slot));
                return {};
            }
            return EErrorCode::ObjectNotFound;
        });
    }

    Result GetInfo(SnapshotInfo& info) const override {
        if (const int code = Fault("ISnapshot::GetInfo", Identity())) return Result(code);
        info = {m_session->Project().name, m_session->snapshot->name, m_session->snapshot->index};
        return {};
    }

    Result GetUIDManager(IUIDManager& manager) const override {
        if (const int code = Fault("ISnapshot::GetUIDManager", Identity())) return Result(code);
        try {
            manager = IUIDManager(RefPtr<const ObjectResolver>(new Resolver(m_session)));
            return {};
        } catch (const std::bad_alloc&) {
            return EErrorCode::OutOfMemory;
        }
    }

    Result BeginTransaction(const ETransactionType& type) const override {
        if (const int code = Fault("ISnapshot::BeginTransaction", Identity())) return Result(code);
        return DesignDb::BeginTransaction(*m_session, type);
    }
    Result CommitTransaction() const override {
        if (const int code = Fault("ISnapshot::CommitTransaction", Identity())) return Result(code);
        return DesignDb::CommitTransaction(*m_session);
    }
    Result RollbackTransaction() const override {
        if (const int code = Fault("ISnapshot::RollbackTransaction", Identity())) return Result(code);
        return DesignDb::RollbackTransaction(*m_session);
    }
    Result IsTransactionActive(bool& active) const override {
        if (const int code = Fault("ISnapshot::IsTransactionActive", Identity())) return Result(code);
        active = OwnsTransaction(*m_session);
        return {};
    }

    Result AddEventObserver(EventObserver* observer) const override {
        if (const int code = Fault("ISnapshot::AddEventObserver", Identity())) return Result(code);
        return DesignDb::AddEventObserver(*m_session, observer);
    }
    Result RemoveEventObserver(EventObserver* observer) const override {
        if (const int code = Fault("ISnapshot::RemoveEventObserver", Identity())) return Result(code);
        return DesignDb::RemoveEventObserver(*m_session, observer);
    }

private:
    template <class Function>
    Result Read(const char* operation, Function&& read) const {
        return ReadGraph(operation, Identity(), m_session, read);
    }

    template <class Record, class Interface, class... Arguments>
    Result Iterate(const char* operation, IteratorT<const Interface>& iterator, Arguments... arguments) const {
        if (const int code = Fault(operation, Identity())) return Result(code);
        try {
            iterator = IteratorT<const Interface>(
                RefPtr<IterationSource>(new SlotSource<Record, Interface>(m_session, 0, arguments...)));
            return {};
        } catch (const std::bad_alloc&) {
            return EErrorCode::OutOfMemory;
        }
    }

    Result AcquireLock(ELockScope scope, RefPtr<LockToken>& token) const override {
        if (const int code = Fault("LockerT<ISnapshot>::Lock", Identity())) return Result(code);
        return AcquireLocks(m_session, scope, token, [this](const Graph& graph, LockRequests& requests) -> Result {
            if (m_session->snapshot->removed) return EErrorCode::ObjectNotFound;
            requests.push_back({ChainOf(graph, {EObjectType::Snapshot, 0, 0}), Identity(), false});
            return {};
        });
    }
    Index Identity() const noexcept override { return m_session->snapshot->DesignIndex(); }
    void OnUnreferenced() const noexcept override { delete this; }

    const SessionRef m_session;
};

}  // namespace

RefPtr<const ISnapshot> MakeSnapshot(const SessionRef& session) {
    return RefPtr<const ISnapshot>(new SnapshotFace(session));
}

const SessionRef* SessionOf(const ISnapshot& snapshot) noexcept {
    const auto* const face = dynamic_cast<const SnapshotFace*>(&snapshot);
    return face != nullptr ? &face->GetSession() : nullptr;
}

}  // namespace Orin::DesignDb
