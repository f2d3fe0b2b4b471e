#include "tests/designdb/engine_design.h"

namespace Tests {

using namespace Orin;

namespace {

class Writer {
public:
    explicit Writer(const TestClient& client) : m_client(client) {}

    std::vector<std::string> Write() {
        ListAttribute design;
        EXPECT_TRUE(m_client.snapshot->GetAttributes(design));
        Attributes("design", design);
        IteratorT<const IBlock> block;
        EXPECT_TRUE(m_client.snapshot->GetIterBlocks(block));
        for (; block; ++block)
            Block(*block);
        IteratorT<const IConfig> config;
        EXPECT_TRUE(m_client.snapshot->GetIterConfigs(config));
        for (; config; ++config) {
            ContainerT<const IPath> root;
            ContainerT<const IBlock> top;
            const std::string own = "config " + IndexText(*config);
            Add(own + " name " + Name(*config));
            if (config->GetRoot(root) && root->GetBlock(top)) Add(own + " root " + IndexText(*top));
        }
        return std::move(m_facts);
    }

private:
    void Add(std::string fact) { m_facts.push_back(std::move(fact)); }

    template <class T>
    static std::string Name(const T& object) {
        String name;
        EXPECT_TRUE(object.GetName(name));
        return std::string(name.View());
    }
    template <class T>
    static std::string Label(const T& object) {
        String label;
        EXPECT_TRUE(object.GetLabel(label));
        return std::string(label.View());
    }
    static std::string IndexText(const IObject& object) {
        Index index;
        EXPECT_TRUE(object.GetIndex(index));
        return Text(index);
    }

    void Attributes(const std::string& owner, const ListAttribute& attributes) {
        for (const Attribute& a : attributes)
            Add(owner + " attribute " + std::to_string(static_cast<int>(a.type)) + " " + std::string(a.name.View()) +
                "=" + std::string(a.value.View()));
    }
    template <class T>
    void AttributesOf(const std::string& owner, const T& object) {
        ListAttribute attributes;
        EXPECT_TRUE(object.GetAttributes(attributes));
        Attributes(owner, attributes);
    }
    template <class T>
    void GroupsOf(const std::string& owner, const T& object) {
        ListT<GroupInfo> groups;
        EXPECT_TRUE(object.GetListGroups(groups, GroupTypes()));
        for (const GroupInfo& group : groups)
            Add(owner + " in " + Text(group.index));
    }

    void Block(const IBlock& block) {
        const std::string owner = "block " + IndexText(block);
        BlockTypes types;
        EXPECT_TRUE(block.GetType(types));
        Add(owner + " name " + Name(block) + " types " + std::to_string(types.Bits()));
        AttributesOf(owner, block);
        ListT<GroupInfo> groups;
        EXPECT_TRUE(block.GetListOwnedGroups(groups, GroupTypes()));
        for (const GroupInfo& info : groups)
            Group(block, info);
        IteratorT<const IComp> comp;
        EXPECT_TRUE(block.GetIterComps(comp, CompTypes()));
        for (; comp; ++comp)
            Comp(owner, *comp);
        IteratorT<const INet> net;
        EXPECT_TRUE(block.GetIterNets(net));
        for (; net; ++net)
            Net(owner, *net);
        IteratorT<const IBus> bus;
        EXPECT_TRUE(block.GetIterBuses(bus));
        for (; bus; ++bus) {
            const std::string own = "bus " + IndexText(*bus);
            Add(owner + " " + own + " label " + Label(*bus));
            AttributesOf(own, *bus);
            GroupsOf(own, *bus);
            IteratorT<const INet> member;
            EXPECT_TRUE(bus->GetIterNetsConnected(member));
            for (; member; ++member)
                Add(own + " net " + IndexText(*member));
        }
    }

    void Group(const IBlock& block, const GroupInfo& info) {
        const std::string own = "group " + Text(info.index);
        Add("block " + IndexText(block) + " " + own + " name " + std::string(info.name.View()) + " type " +
            std::to_string(static_cast<int>(info.type)));
        ContainerT<const IGroup> group;
        ASSERT_TRUE(block.GetGroup(group, info.index));
        AttributesOf(own, *group);
        ListT<Index> members;
        EXPECT_TRUE(group->GetListObjects(members));
        for (const Index& member : members)
            Add(own + " member " + Text(member));
        ContainerT<const IBlockViewQuill> view;
        ASSERT_TRUE(IBlockViewQuill::Init(view, block, *group));
        for (const Index& member : members) {
            CompDataQuill data;
            const ContainerT<const IComp> comp = m_client.Comp(member);
            if (comp && view->GetCompData(*comp, data))
                Add(own + " draws " + Text(member) + " " + std::to_string(data.objectId));
        }
        IteratorT<const ILineQuill> line;
        EXPECT_TRUE(view->GetIterLines(line));
        for (; line; ++line) {
            LineDataQuill data;
            EXPECT_TRUE(line->GetData(data));
            Add(own + " line " + IndexText(*line) + " " + std::to_string(data.objectId));
        }
    }

    void Comp(const std::string& block, const IComp& comp) {
        const std::string own = "comp " + IndexText(comp);
        CompTypes types;
        EXPECT_TRUE(comp.GetType(types));
        ContainerT<const IBlock> child;
        ContainerT<const IComp> definition;
        Add(block + " " + own + " label " + Label(comp) + " name " + Name(comp) + " types " +
            std::to_string(types.Bits()));
        if (comp.GetChildBlock(child)) Add(own + " child " + IndexText(*child));
        if (comp.GetDefinition(definition)) Add(own + " definition " + IndexText(*definition));
        AttributesOf(own, comp);
        GroupsOf(own, comp);
        Index bus;
        Index index;
        EXPECT_TRUE(comp.GetIndex(index));
        if (m_client.editor.GetRippedBus(index, bus)) Add(own + " rips " + Text(bus));
        IteratorT<const IPin> pin;
        EXPECT_TRUE(comp.GetIterPins(pin));
        for (; pin; ++pin) {
            ContainerT<const INet> net;
            const std::string pins = " pin " + IndexText(*pin);
            Add(own + pins + " label " + Label(*pin));
            if (pin->GetNet(net)) Add(own + pins + " net " + IndexText(*net));
        }
    }

    void Net(const std::string& block, const INet& net) {
        const std::string own = "net " + IndexText(net);
        Add(block + " " + own + " label " + Label(net));
        AttributesOf(own, net);
        GroupsOf(own, net);
        IteratorT<const IBus> bus;
        EXPECT_TRUE(net.GetIterBusesConnected(bus));
        for (; bus; ++bus)
            Add(own + " bus " + IndexText(*bus));
        IteratorT<const IPin> pin;
        EXPECT_TRUE(net.GetIterPinsConnected(pin));
        for (; pin; ++pin)
            Add(own + " pin " + IndexText(*pin));
    }

    const TestClient& m_client;
    std::vector<std::string> m_facts;
};

}  // namespace

std::vector<std::string> Facts(const TestClient& client) {
    return Writer(client).Write();
}

}  // namespace Tests
