// Blocks, configurations, and places of the hierarchy.
#include "designdb/detail/face.h"

namespace Orin::DesignDb {

namespace {

class BlockFace final : public Face<IBlock, BlockRecord> {
public:
    BlockFace(const SessionRef& session, Slot slot, const Index& index) noexcept : Face(session, slot, index) {}

    Result GetAttribute(const String& name, String& value) const override {
        return Read("IBlock::GetAttribute", [&](const Graph&, const BlockRecord& block) {
            return ReadAttribute(block.attributes, name, EAttributeType::User, value);
        });
    }
    Result SetAttribute(const String& name, const String& value) override {
        if (const int code = Fault("IBlock::SetAttribute", m_index)) return Result(code);
        return SetAttributeLocked(*m_session, {Record::Kind, m_slot}, nullptr, name, value, EAttributeType::User);
    }
    Result RemoveAttribute(const String& name) override {
        if (const int code = Fault("IBlock::RemoveAttribute", m_index)) return Result(code);
        return RemoveAttributeLocked(*m_session, {Record::Kind, m_slot}, nullptr, name, EAttributeType::User);
    }
    Result GetAttributes(ListAttribute& attributes) const override {
        return Read("IBlock::GetAttributes", [&](const Graph&, const BlockRecord& block) -> Result {
            attributes = block.attributes;
            return {};
        });
    }
    Result GetComp(ContainerT<const IComp>& comp, const Index& index) const override {
        return Read("IBlock::GetComp", [&](const Graph& graph, const BlockRecord& block) -> Result {
            const Slot slot = graph.SlotOf<CompRecord>(index);
            if (slot == 0 || graph.Find<BlockRecord>(graph.Find<CompRecord>(slot)->block) != &block)
                return EErrorCode::ObjectNotFound;
            comp = ContainerT<const IComp>(MakeComp(m_session, graph, slot));
            return {};
        });
    }
    Result GetGroup(ContainerT<const IGroup>& group, const Index& index) const override {
        return Read("IBlock::GetGroup", [&](const Graph& graph, const BlockRecord& block) -> Result {
            const Slot slot = graph.SlotOf<GroupRecord>(index);
            if (slot == 0 || graph.Find<BlockRecord>(graph.Find<GroupRecord>(slot)->block) != &block)
                return EErrorCode::ObjectNotFound;
            group = ContainerT<const IGroup>(MakeGroup(m_session, graph, slot));
            return {};
        });
    }
    Result GetIterNets(IteratorT<const INet>& nets) const override {
        return Iterate<NetRecord>("IBlock::GetIterNets", nets, AboveIn<BlockRecord, &BlockRecord::nets>, MakeNet);
    }
    Result GetListOwnedGroups(ListT<GroupInfo>& groups, EGroupType type) const override {
        return GetListOwnedGroups(groups, GroupTypes(type));
    }
    Result GetListOwnedGroups(ListT<GroupInfo>& groups, const GroupTypes& types) const override {
        return Read("IBlock::GetListOwnedGroups", [&](const Graph& graph, const BlockRecord& block) -> Result {
            ListT<GroupInfo> found;
            block.groups.ForEach([&](Slot slot) {
                const GroupRecord& group = *graph.Find<GroupRecord>(slot);
                if (types.IsEmpty() || types.Contains(group.type)) found.Append({group.index, group.name, group.type});
            });
            groups = std::move(found);
            return {};
        });
    }
    Result GetParentSnapshot(ContainerT<const ISnapshot>& snapshot) const override {
        return Read("IBlock::GetParentSnapshot", [&](const Graph&, const BlockRecord&) -> Result {
            snapshot = ContainerT<const ISnapshot>(MakeSnapshot(m_session));
            return {};
        });
    }
    Result GetType(BlockTypes& types) const override {
        return Read("IBlock::GetType", [&](const Graph&, const BlockRecord& block) -> Result {
            types = block.types;
            return {};
        });
    }
    Result GetLibraryName(String& name) const override {
        return Read("IBlock::GetLibraryName", [&](const Graph&, const BlockRecord& block) -> Result {
            name = block.libraryName;
            return {};
        });
    }
    Result GetIterComps(IteratorT<const IComp>& comps, const CompTypes& types) const override {
        return Iterate<CompRecord>("IBlock::GetIterComps", comps, AboveIn<BlockRecord, &BlockRecord::comps>,
                                   MakeDefinition, BearsType, types.Bits());
    }
    Result GetIterBuses(IteratorT<const IBus>& buses) const override {
        return Iterate<BusRecord>("IBlock::GetIterBuses", buses, AboveIn<BlockRecord, &BlockRecord::buses>, MakeBus);
    }

private:
    template <class Element, class Interface, class... Arguments>
    Result Iterate(const char* operation, IteratorT<const Interface>& iterator, Arguments... arguments) const {
        Result result = Read(operation, [](const Graph&, const BlockRecord&) { return Result(); });
        if (!result) return result;
        // The source takes the graph for itself at each step, so it is made after the check has let go of it.
        try {
            iterator = IteratorT<const Interface>(
                RefPtr<IterationSource>(new SlotSource<Element, Interface>(m_session, m_slot, arguments...)));
            return {};
        } catch (const std::bad_alloc&) {
            return EErrorCode::OutOfMemory;
        }
    }

    Result OpenView(ContainerT<const IBlockViewQuill>& view, const IGroup& group) const override {
        const Index groupIndex = ObjectAccess::Identity(group);
        return Read("IBlockViewQuill::Init", [&](const Graph& graph, const BlockRecord& block) -> Result {
            const Slot slot = graph.SlotOf<GroupRecord>(groupIndex);
            if (slot == 0 || graph.Find<BlockRecord>(graph.Find<GroupRecord>(slot)->block) != &block)
                return EErrorCode::ObjectNotFound;
            view = ContainerT<const IBlockViewQuill>(MakeBlockView(m_session, graph, slot));
            return {};
        });
    }

    const char* LockOperation(ELockScope) const noexcept override { return "LockerT<IBlock>::Lock"; }
};

class ConfigFace final : public Face<IConfig, ConfigRecord> {
public:
    ConfigFace(const SessionRef& session, Slot slot, const Index& index) noexcept : Face(session, slot, index) {}

    Result GetRoot(ContainerT<const IPath>& root) const override {
        return Read("IConfig::GetRoot", [&](const Graph& graph, const ConfigRecord& config) -> Result {
            if (graph.Find<BlockRecord>(config.root) == nullptr) return EErrorCode::NoValue;
            root = ContainerT<const IPath>(MakePath(m_session, m_session->Project().paths.Root(m_slot)));
            return {};
        });
    }
};

class PathFace final : public IPath {
public:
    PathFace(const SessionRef& session, const PathNode& place) noexcept : m_session(session), m_place(place) {}

    Result GetName(String& name) const override {
        return Read("IObject::GetName", [&](const Graph& graph, Slot block) -> Result {
            name = graph.Find<BlockRecord>(block)->name;
            return {};
        });
    }
    Result GetIndex(Index& index) const override {
        if (const int code = Fault("IObject::GetIndex", m_place.GetIndex())) return Result(code);
        index = m_place.GetIndex();
        return {};
    }
    Result IsValid() const override {
        return ReadGraph("IObject::IsValid", m_place.GetIndex(), m_session, [&](const Graph& graph) -> Result {
            return Exists(graph, m_place) ? Result() : Result(EErrorCode::ObjectNotFound);
        });
    }

    Result GetBlock(ContainerT<const IBlock>& block) const override {
        return Read("IPath::GetBlock", [&](const Graph& graph, Slot own) -> Result {
            block = ContainerT<const IBlock>(MakeBlock(m_session, graph, own));
            return {};
        });
    }
    Result GetChildPath(ContainerT<const IPath>& child, const Index& comp) const override {
        return Read("IPath::GetChildPath", [&](const Graph& graph, Slot own) -> Result {
            const Slot slot = graph.SlotOf<CompRecord>(comp);
            if (slot == 0 || graph.Find<CompRecord>(slot)->block != own) return EErrorCode::NotInHierarchy;
            const Slot below = graph.Find<CompRecord>(slot)->child;
            // A block that stands above itself would make the hierarchy endless.
            if (graph.Find<BlockRecord>(below) == nullptr || IsOnPath(graph, m_place, below))
                return EErrorCode::NotInHierarchy;
            const PathNode& place = m_session->Project().paths.Child(m_place, slot);
            place.knownUnder.store(graph.Structure(), std::memory_order_relaxed);
            child = ContainerT<const IPath>(MakePath(m_session, place));
            return {};
        });
    }
    Result GetCompInPath(ContainerT<const IComp>& occurrence, const Index& comp) const override {
        return Read("IPath::GetCompInPath", [&](const Graph& graph, Slot own) -> Result {
            const Slot slot = graph.SlotOf<CompRecord>(comp);
            if (slot == 0 || graph.Find<CompRecord>(slot)->block != own) return EErrorCode::NotInHierarchy;
            occurrence = ContainerT<const IComp>(MakeComp(m_session, graph, slot, &m_place));
            return {};
        });
    }
    Result GetListHierarchyIndexes(ListT<Index>& indexes) const override {
        return Read("IPath::GetListHierarchyIndexes", [&](const Graph& graph, Slot) -> Result {
            std::vector<Index> way(m_place.depth);
            for (const PathNode* node = &m_place; node->parent != nullptr; node = node->parent) {
                const CompRecord* const comp = graph.Find<CompRecord>(node->comp);
                if (comp == nullptr) return EErrorCode::NotInHierarchy;
                way[node->depth - 1] = comp->index;
            }
            indexes = ListT<Index>(way);
            return {};
        });
    }
    Result GetParentComp(ContainerT<const IComp>& comp) const override {
        return Read("IPath::GetParentComp", [&](const Graph& graph, Slot) -> Result {
            if (m_place.parent == nullptr) return EErrorCode::NoValue;
            comp = ContainerT<const IComp>(MakeComp(m_session, graph, m_place.comp, m_place.parent));
            return {};
        });
    }

private:
    // `read(graph, block)` with the block that stands here.
    template <class Function>
    Result Read(const char* operation, Function&& read) const {
        return ReadGraph(operation, m_place.GetIndex(), m_session, [&](const Graph& graph) -> Result {
            return Exists(graph, m_place) ? read(graph, BlockAt(graph, m_place)) : Result(EErrorCode::ObjectNotFound);
        });
    }

    Result AcquireLock(ELockScope, RefPtr<LockToken>&) const override { return EErrorCode::InvalidArgument; }
    Index Identity() const noexcept override { return m_place.GetIndex(); }
    void OnUnreferenced() const noexcept override { delete this; }

    const SessionRef m_session;
    const PathNode& m_place;  // lives as long as the project
};

}  // namespace

RefPtr<const IBlock> MakeBlock(const SessionRef& session, const Graph& graph, Slot slot) {
    return RefPtr<const IBlock>(new BlockFace(session, slot, graph.Find<BlockRecord>(slot)->index));
}

RefPtr<const IConfig> MakeConfig(const SessionRef& session, const Graph& graph, Slot slot) {
    return RefPtr<const IConfig>(new ConfigFace(session, slot, graph.Find<ConfigRecord>(slot)->index));
}

RefPtr<const IPath> MakePath(const SessionRef& session, const PathNode& place) {
    return RefPtr<const IPath>(new PathFace(session, place));
}

}  // namespace Orin::DesignDb
