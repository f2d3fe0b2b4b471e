#include <type_traits>

#include "tests/designdb/engine_design.h"

namespace Tests {

using namespace Orin;

namespace {

class Writer {
public:
    explicit Writer(const TestClient& client) : m_client(client) {}

    std::vector<std::string> Write() {
        const ISnapshot& design = *m_client.snapshot;
        AttributesOf("design", design);
        Each(design, &ISnapshot::GetIterBlocks, [&](const IBlock& block) { Block(block); });
        Each(design, &ISnapshot::GetIterConfigs, [&](const IConfig& config) {
            ContainerT<const IPath> root;
            ContainerT<const IBlock> top;
            Add(Own("config", config) + " name " + Name(config));
            if (config.GetRoot(root) && root->GetBlock(top)) Add(Own("config", config) + Own(" root", *top));
        });
        return std::move(m_facts);
    }

private:
    void Add(std::string fact) { m_facts.push_back(std::move(fact)); }

    static std::string Name(const IObject& object) {
        String name;
        EXPECT_TRUE(object.GetName(name));
        return std::string(name.View());
    }
    template <class T>
    static std::string Label(const T& object) {
        String label;
        EXPECT_TRUE(object.GetLabel(label));
        return " label " + std::string(label.View());
    }
    static std::string Own(const std::string& word, const IObject& object) {
        Index index;
        EXPECT_TRUE(object.GetIndex(index));
        return word + " " + Text(index);
    }
    template <class T, class Owner, class... Filter, class Visit>
    static void Each(const Owner& owner, Result (Owner::*list)(IteratorT<const T>&, Filter...) const, Visit visit) {
        IteratorT<const T> iterator;
        EXPECT_TRUE((owner.*list)(iterator, std::remove_cvref_t<Filter>()...));
        for (; iterator; ++iterator)
            visit(*iterator);
    }

    template <class T>
    void AttributesOf(const std::string& own, const T& object) {
        ListAttribute attributes;
        EXPECT_TRUE(object.GetAttributes(attributes));
        for (const Attribute& a : attributes)
            Add(own + " attribute " + std::to_string(static_cast<int>(a.type)) + " " + std::string(a.name.View()) +
                "=" + std::string(a.value.View()));
    }
    template <class T>
    void AttributesAndGroupsOf(const std::string& own, const T& object) {
        AttributesOf(own, object);
        ListT<GroupInfo> groups;
        EXPECT_TRUE(object.GetListGroups(groups, GroupTypes()));
        for (const GroupInfo& group : groups)
            Add(own + " in " + Text(group.index));
    }

    void Block(const IBlock& block) {
        const std::string own = Own("block", block);
        BlockTypes types;
        EXPECT_TRUE(block.GetType(types));
        Add(own + " name " + Name(block) + " types " + std::to_string(types.Bits()));
        AttributesOf(own, block);
        ListT<GroupInfo> groups;
        EXPECT_TRUE(block.GetListOwnedGroups(groups, GroupTypes()));
        for (const GroupInfo& info : groups)
            Group(block, info);
        Each(block, &IBlock::GetIterComps, [&](const IComp& comp) { Comp(own, comp); });
        Each(block, &IBlock::GetIterNets, [&](const INet& net) {
            const std::string it = Own("net", net);
            Add(own + " " + it + Label(net));
            AttributesAndGroupsOf(it, net);
            Each(net, &INet::GetIterBusesConnected, [&](const IBus& bus) { Add(it + Own(" bus", bus)); });
            Each(net, &INet::GetIterPinsConnected, [&](const IPin& pin) { Add(it + Own(" pin", pin)); });
        });
        Each(block, &IBlock::GetIterBuses, [&](const IBus& bus) {
            const std::string it = Own("bus", bus);
            Add(own + " " + it + Label(bus));
            AttributesAndGroupsOf(it, bus);
            Each(bus, &IBus::GetIterNetsConnected, [&](const INet& net) { Add(it + Own(" net", net)); });
        });
    }

    void Group(const IBlock& block, const GroupInfo& info) {
        const std::string own = "group " + Text(info.index);
        Add(Own("block", block) + " " + own + " name " + std::string(info.name.View()) + " type " +
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
        Each(*view, &IBlockViewQuill::GetIterLines, [&](const ILineQuill& line) {
            LineDataQuill data;
            EXPECT_TRUE(line.GetData(data));
            Add(own + Own(" line", line) + " " + std::to_string(data.objectId));
        });
    }

    void Comp(const std::string& block, const IComp& comp) {
        const std::string own = Own("comp", comp);
        CompTypes types;
        EXPECT_TRUE(comp.GetType(types));
        Add(block + " " + own + Label(comp) + " name " + Name(comp) + " types " + std::to_string(types.Bits()));
        AttributesAndGroupsOf(own, comp);
        ContainerT<const IBlock> child;
        ContainerT<const IComp> definition;
        Index index, bus;
        if (comp.GetChildBlock(child)) Add(own + Own(" child", *child));
        if (comp.GetDefinition(definition)) Add(own + Own(" definition", *definition));
        if (comp.GetIndex(index) && m_client.editor.GetRippedBus(index, bus)) Add(own + " rips " + Text(bus));
        Each(comp, &IComp::GetIterPins, [&](const IPin& pin) {
            ContainerT<const INet> net;
            Add(own + Own(" pin", pin) + Label(pin));
            if (pin.GetNet(net)) Add(own + Own(" pin", pin) + Own(" net", *net));
        });
    }

    const TestClient& m_client;
    std::vector<std::string> m_facts;
};

}  // namespace

std::vector<std::string> Facts(const TestClient& client) {
    return Writer(client).Write();
}

}  // namespace Tests
