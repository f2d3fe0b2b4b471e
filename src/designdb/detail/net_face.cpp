// Nets, buses and groups.
#include "designdb/detail/face.h"

namespace Orin::DesignDb {

namespace {

// An iteration over what `parent` is connected to.
template <class Element, class Interface>
Result IterateConnected(const SessionRef& session, Slot parent, IteratorT<const Interface>& iterator,
                        typename SlotSource<Element, Interface>::Above above,
                        typename SlotSource<Element, Interface>::Make make) {
    try {
        iterator = IteratorT<const Interface>(
            RefPtr<IterationSource>(new SlotSource<Element, Interface>(session, parent, above, make)));
        return {};
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

class NetFace final : public Face<INet, NetRecord> {
public:
    NetFace(const SessionRef& session, Slot slot, const Index& index) noexcept : Face(session, slot, index) {}

    Result GetAttributes(ListAttribute& attributes) const override {
        return Read("INet::GetAttributes", [&](const Graph&, const NetRecord& net) -> Result {
            attributes = net.attributes;
            return {};
        });
    }
    Result GetIterBusesConnected(IteratorT<const IBus>& buses) const override {
        Result result = Read("INet::GetIterBusesConnected", [](const Graph&, const NetRecord&) { return Result(); });
        if (!result) return result;
        return IterateConnected<BusRecord>(m_session, m_slot, buses, AboveIn<NetRecord, &NetRecord::buses>, MakeBus);
    }
    Result GetLabel(String& label) const override {
        return Read("INet::GetLabel", [&](const Graph&, const NetRecord& net) -> Result {
            label = net.label;
            return {};
        });
    }
    Result GetListGroups(ListT<GroupInfo>& groups, const GroupTypes& types) const override {
        return Read("INet::GetListGroups", [&](const Graph& graph, const NetRecord& net) -> Result {
            groups = ListGroups(graph, net.groups, types);
            return {};
        });
    }
    Result GetParentBlock(ContainerT<const IBlock>& block) const override {
        return Read("INet::GetParentBlock", [&](const Graph& graph, const NetRecord& net) -> Result {
            block = ContainerT<const IBlock>(MakeBlock(m_session, graph, net.block));
            return {};
        });
    }
    Result GetAttribute(const String& name, String& value) const override {
        return Read("INet::GetAttribute", [&](const Graph&, const NetRecord& net) {
            return ReadAttribute(net.attributes, name, EAttributeType::User, value);
        });
    }
    Result GetIterPinsConnected(IteratorT<const IPin>& pins) const override {
        Result result = Read("INet::GetIterPinsConnected", [](const Graph&, const NetRecord&) { return Result(); });
        if (!result) return result;
        return IterateConnected<PinRecord>(m_session, m_slot, pins, AboveIn<NetRecord, &NetRecord::pins>, MakePin);
    }
};

class BusFace final : public Face<IBus, BusRecord> {
public:
    BusFace(const SessionRef& session, Slot slot, const Index& index) noexcept : Face(session, slot, index) {}

    Result GetAttribute(const String& name, String& value) const override {
        return Read("IBus::GetAttribute", [&](const Graph&, const BusRecord& bus) {
            return ReadAttribute(bus.attributes, name, EAttributeType::User, value);
        });
    }
    Result SetAttribute(const String& name, const String& value) override {
        if (const int code = Fault("IBus::SetAttribute", m_index)) return Result(code);
        return SetAttributeLocked(*m_session, {Record::Kind, m_slot}, nullptr, name, value, EAttributeType::User);
    }
    Result GetAttributes(ListAttribute& attributes) const override {
        return Read("IBus::GetAttributes", [&](const Graph&, const BusRecord& bus) -> Result {
            attributes = bus.attributes;
            return {};
        });
    }
    Result GetIterNetsConnected(IteratorT<const INet>& nets) const override {
        Result result = Read("IBus::GetIterNetsConnected", [](const Graph&, const BusRecord&) { return Result(); });
        if (!result) return result;
        return IterateConnected<NetRecord>(m_session, m_slot, nets, AboveIn<BusRecord, &BusRecord::nets>, MakeNet);
    }
    Result GetLabel(String& label) const override {
        return Read("IBus::GetLabel", [&](const Graph&, const BusRecord& bus) -> Result {
            label = bus.label;
            return {};
        });
    }
    Result GetListGroups(ListT<GroupInfo>& groups, EGroupType type) const override {
        return GetListGroups(groups, GroupTypes(type));
    }
    Result GetListGroups(ListT<GroupInfo>& groups, const GroupTypes& types) const override {
        return Read("IBus::GetListGroups", [&](const Graph& graph, const BusRecord& bus) -> Result {
            groups = ListGroups(graph, bus.groups, types);
            return {};
        });
    }
    Result GetParentBlock(ContainerT<const IBlock>& block) const override {
        return Read("IBus::GetParentBlock", [&](const Graph& graph, const BusRecord& bus) -> Result {
            block = ContainerT<const IBlock>(MakeBlock(m_session, graph, bus.block));
            return {};
        });
    }

private:
    const char* LockOperation(ELockScope) const noexcept override { return "LockerT<IBus>::Lock"; }
};

class GroupFace final : public Face<IGroup, GroupRecord> {
public:
    GroupFace(const SessionRef& session, Slot slot, const Index& index) noexcept : Face(session, slot, index) {}

    Result GetAttribute(const String& name, String& value) const override {
        return Read("IGroup::GetAttribute", [&](const Graph&, const GroupRecord& group) {
            return ReadAttribute(group.attributes, name, EAttributeType::User, value);
        });
    }
    Result SetAttribute(const String& name, const String& value) override {
        if (const int code = Fault("IGroup::SetAttribute", m_index)) return Result(code);
        return SetAttributeLocked(*m_session, {Record::Kind, m_slot}, nullptr, name, value, EAttributeType::User);
    }
    Result RemoveAttribute(const String& name) override {
        if (const int code = Fault("IGroup::RemoveAttribute", m_index)) return Result(code);
        return RemoveAttributeLocked(*m_session, {Record::Kind, m_slot}, nullptr, name, EAttributeType::User);
    }
    Result GetAttributes(ListAttribute& attributes) const override {
        return Read("IGroup::GetAttributes", [&](const Graph&, const GroupRecord& group) -> Result {
            attributes = group.attributes;
            return {};
        });
    }
    Result GetListObjects(ListT<Index>& objects) const override {
        return Read("IGroup::GetListObjects", [&](const Graph&, const GroupRecord& group) -> Result {
            std::vector<Index> members;
            members.reserve(group.members.Size());
            group.members.ForEach([&members](std::uint64_t member) { members.emplace_back(member); });
            objects = ListT<Index>(members);
            return {};
        });
    }
    Result GetOwner(Index& owner) const override {
        return Read("IGroup::GetOwner", [&](const Graph& graph, const GroupRecord& group) -> Result {
            const GroupRecord* const ownerGroup = graph.Find<GroupRecord>(group.ownerGroup);
            owner = ownerGroup != nullptr ? ownerGroup->index : graph.Find<BlockRecord>(group.block)->index;
            return {};
        });
    }
    Result GetType(EGroupType& type) const override {
        return Read("IGroup::GetType", [&](const Graph&, const GroupRecord& group) -> Result {
            type = group.type;
            return {};
        });
    }
    Result SetName(const String& name) override {
        if (const int code = Fault("IGroup::SetName", m_index)) return Result(code);
        return SetNameLocked(*m_session, {Record::Kind, m_slot}, name);
    }

private:
    const char* LockOperation(ELockScope scope) const noexcept override {
        return scope == ELockScope::Whole ? "LockerT<IGroup>::Lock" : "LockerT<IGroup>::ShallowLock";
    }
};

}  // namespace

RefPtr<const INet> MakeNet(const SessionRef& session, const Graph& graph, Slot slot) {
    return RefPtr<const INet>(new NetFace(session, slot, graph.Find<NetRecord>(slot)->index));
}

RefPtr<const IBus> MakeBus(const SessionRef& session, const Graph& graph, Slot slot) {
    return RefPtr<const IBus>(new BusFace(session, slot, graph.Find<BusRecord>(slot)->index));
}

RefPtr<const IGroup> MakeGroup(const SessionRef& session, const Graph& graph, Slot slot) {
    return RefPtr<const IGroup>(new GroupFace(session, slot, graph.Find<GroupRecord>(slot)->index));
}

ListT<GroupInfo> ListGroups(const Graph& graph, const Memberships& memberships, const GroupTypes& types) {
    ListT<GroupInfo> groups;
    const auto add = [&](Slot slot) {
        const GroupRecord* const group = graph.Find<GroupRecord>(slot);
        if (group == nullptr) return;
        if (types.IsEmpty() || types.Contains(group->type)) groups.Append({group->index, group->name, group->type});
    };
    add(memberships.first);
    for (const Slot slot : memberships.further)
        add(slot);
    return groups;
}

}  // namespace Orin::DesignDb
