#include "designdata/quill_in_orin.h"

#include <list>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "designdb/testing/fault_injector.h"
#include "tests/support/small_design.h"

namespace {

using Orin::EAttributeType;
using Orin::Index;
using Orin::Result;
using Quill::Utils::QuillInOrin;
using Signals = QuillInOrin::BusSignals;

class QuillData : public Tests::SmallDesign {
protected:
    std::string BlockText(const char* name) { return block->GetAttribute(name, value) ? Text() : "none"; }
    std::string CompText(const char* name) {
        return comp->GetAttribute(name, value, EAttributeType::Link) ? Text() : "none";
    }
    std::string BusText(const char* name) { return bus->GetAttribute(name, value) ? Text() : "none"; }

private:
    std::string Text() const { return static_cast<const char*>(value); }
};

TEST_F(QuillData, IsStoredInOneEncodingAndComesBack) {
    std::string name;
    QuillInOrin::StoreDesignName(writableBlock, "Radio, rev. 2");
    EXPECT_EQ(BlockText("$$Internal_Design_Name"), "Radio, rev. 2");
    EXPECT_TRUE(QuillInOrin::GetDesignName(*block, name) && name == "Radio, rev. 2");

    Index index;
    QuillInOrin::StoreBoardBlock(writableBlock, Index(18446744073709551615U));
    EXPECT_EQ(BlockText("$$Internal_BoardUid"), "18446744073709551615");
    EXPECT_TRUE(QuillInOrin::GetBoardBlock(*block, index) && index == 18446744073709551615U);
    QuillInOrin::StoreRipperBus(writableComp, Index(4294967301));
    EXPECT_EQ(CompText("$$Internal____Bus"), "4294967301");
    EXPECT_TRUE(QuillInOrin::GetRipperBus(*comp, index) && index == 4294967301U);

    std::map<int, int> map = {{4, 7}, {9, 9}};
    QuillInOrin::StoreRipperSignalMap(writableComp, {{4, 1}, {3, 0}, {-1, -2}});
    EXPECT_EQ(CompText("$$Internal____SignalMap"), "-1,-2,3,0,4,1");
    EXPECT_TRUE(QuillInOrin::GetRipperSignalMap(*comp, map));
    EXPECT_EQ(map, (std::map<int, int>{{-1, -2}, {3, 0}, {4, 1}, {9, 9}})) << "merged, and the stored value wins";

    Signals signals = {{5, Index(5)}};
    QuillInOrin::StoreBusSignals(writableBus, {{0, Index(4294967301)}, {-1, Index(4294967302)}});
    EXPECT_EQ(BusText("$$Internal____Signals"), "0,4294967301,-1,4294967302");
    EXPECT_TRUE(QuillInOrin::GetBusSignals(*bus, signals));
    EXPECT_EQ(signals, (Signals{{5, Index(5)}, {0, Index(4294967301)}, {-1, Index(4294967302)}})) << "appended";

    std::list<std::string> list = {"what stood there"};
    std::vector<std::string> vector = {"what stood there"};
    QuillInOrin::StoreBusSignalNames(writableBus, std::list<std::string>{"A0", "A1", "CLK"});
    EXPECT_EQ(BusText("$$Internal____SignalNames"), "A0,A1,CLK");
    EXPECT_TRUE(QuillInOrin::GetBusSignalNames(*bus, vector));
    EXPECT_EQ(vector, (std::vector<std::string>{"A0", "A1", "CLK"})) << "replaced";
    QuillInOrin::StoreBusSignalNames(writableBus, std::vector<std::string>{"B"});
    EXPECT_EQ(BusText("$$Internal____SignalNames"), "B");
    EXPECT_TRUE(QuillInOrin::GetBusSignalNames(*bus, list) && list == std::list<std::string>{"B"});
}

TEST_F(QuillData, ExistsWhenEmpty) {
    std::map<int, int> map;
    Signals signals;
    std::vector<std::string> names = {"what stood there"};
    QuillInOrin::StoreRipperSignalMap(writableComp, {});
    QuillInOrin::StoreBusSignals(writableBus, {});
    QuillInOrin::StoreBusSignalNames(writableBus, std::vector<std::string>());
    EXPECT_EQ(CompText("$$Internal____SignalMap") + BusText("$$Internal____Signals"), "");
    EXPECT_TRUE(QuillInOrin::GetRipperSignalMap(*comp, map) && map.empty());
    EXPECT_TRUE(QuillInOrin::GetBusSignals(*bus, signals) && signals.empty());
    EXPECT_TRUE(QuillInOrin::GetBusSignalNames(*bus, names) && names.empty());
}

TEST_F(QuillData, LeavesOutputsAloneWhenAbsent) {
    std::string name = "name";
    Index index(1);
    std::map<int, int> map = {{1, 1}};
    Signals signals = {{1, Index(1)}};
    std::list<std::string> list = {"x"};
    std::vector<std::string> vector = {"x"};
    // The right key in the wrong family is not the value.
    EXPECT_TRUE(editor.SetAttribute(compIndex, "$$Internal____Bus", "5", EAttributeType::System));
    EXPECT_FALSE(QuillInOrin::GetDesignName(*block, name) || QuillInOrin::GetBoardBlock(*block, index) ||
                 QuillInOrin::GetRipperBus(*comp, index) || QuillInOrin::GetRipperSignalMap(*comp, map) ||
                 QuillInOrin::GetBusSignals(*bus, signals) || QuillInOrin::GetBusSignalNames(*bus, list) ||
                 QuillInOrin::GetBusSignalNames(*bus, vector));
    EXPECT_EQ(name, "name");
    EXPECT_EQ(index, Index(1));
    EXPECT_TRUE(map.size() == 1 && signals.size() == 1 && list.size() == 1 && vector.size() == 1);
}

TEST_F(QuillData, OfOlderDesignsIsReadUnderTheBareKey) {
    Index bus1;
    EXPECT_TRUE(editor.SetAttribute(compIndex, "___Bus", "5", EAttributeType::Link));
    EXPECT_TRUE(QuillInOrin::GetRipperBus(*comp, bus1) && bus1 == 5U);
    QuillInOrin::StoreRipperBus(writableComp, Index(5));
    EXPECT_EQ(CompText("$$Internal____Bus"), "5") << "the same value moves to the mangled key";
    QuillInOrin::StoreRipperBus(writableComp, Index(6));
    EXPECT_EQ(CompText("___Bus"), "5");
    EXPECT_TRUE(QuillInOrin::GetRipperBus(*comp, bus1) && bus1 == 6U) << "the mangled key is looked for first";

    std::string name;
    std::vector<std::string> names;
    EXPECT_TRUE(editor.SetAttribute(blockIndex, "Design_Name", "Radio"));
    EXPECT_TRUE(editor.SetAttribute(busIndex, "___SignalNames", "A,B"));
    EXPECT_TRUE(QuillInOrin::GetDesignName(*block, name) && name == "Radio");
    EXPECT_TRUE(QuillInOrin::GetBusSignalNames(*bus, names) && names.size() == 2);
}

TEST_F(QuillData, IsTakenAsItIsWhenDamaged) {
    struct Case {
        const char* text;
        std::vector<std::string> names;
        Signals signals;
        std::map<int, int> map;
    };
    const Case cases[] = {
        {"A0,,A1", {"A0", "A1"}, {{0, Index(0)}}, {{0, 0}}},
        {",,3,7,", {"3", "7"}, {{3, Index(7)}}, {{3, 7}}},
        {"3,7,4", {"3", "7", "4"}, {{3, Index(7)}}, {{3, 7}}},
        {",", {}, {}, {}},
        {"5x, 6,1,2,5,9",
         {"5x", " 6", "1", "2", "5", "9"},
         {{5, Index(6)}, {1, Index(2)}, {5, Index(9)}},
         {{1, 2}, {5, 9}}},
        {"1,99999999999999999999",
         {"1", "99999999999999999999"},
         {{1, Index(18446744073709551615U)}},
         {{1, 2147483647}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_TRUE(editor.SetAttribute(busIndex, "$$Internal____SignalNames", c.text));
        EXPECT_TRUE(editor.SetAttribute(busIndex, "$$Internal____Signals", c.text));
        EXPECT_TRUE(editor.SetAttribute(compIndex, "$$Internal____SignalMap", c.text, EAttributeType::Link));
        std::vector<std::string> names;
        Signals signals;
        std::map<int, int> map;
        EXPECT_TRUE(QuillInOrin::GetBusSignalNames(*bus, names) && QuillInOrin::GetBusSignals(*bus, signals) &&
                    QuillInOrin::GetRipperSignalMap(*comp, map));
        EXPECT_EQ(names, c.names);
        EXPECT_EQ(signals, c.signals);
        EXPECT_EQ(map, c.map);
    }
    Index index(1);
    EXPECT_TRUE(editor.SetAttribute(blockIndex, "$$Internal_BoardUid", "board"));
    EXPECT_TRUE(QuillInOrin::GetBoardBlock(*block, index) && index.IsEmpty()) << "no number is 0, and it exists";
}

TEST_F(QuillData, IsWrittenOnlyWhenItsTextChanges) {
    Orin::DesignDb::Testing::FaultInjector calls;
    const std::vector<std::string> names = {"A0", "A1"};
    QuillInOrin::StoreBusSignalNames(writableBus, names);
    QuillInOrin::StoreBusSignalNames(writableBus, names);
    QuillInOrin::StoreBusSignalNames(writableBus, std::list<std::string>{"A0,A1"});  // another list, the same text
    EXPECT_EQ(calls.Calls("IBus::SetAttribute"), 1U);
    QuillInOrin::StoreRipperBus(writableComp, Index(5));
    QuillInOrin::StoreRipperBus(writableComp, Index(5));
    EXPECT_EQ(calls.Calls("IComp::SetAttribute"), 1U);
    QuillInOrin::StoreDesignName(writableBlock, "Radio");
    QuillInOrin::StoreDesignName(writableBlock, "radio");
    EXPECT_EQ(calls.Calls("IBlock::SetAttribute"), 2U);
    calls.Inject({"IBlock::GetAttribute"});
    QuillInOrin::StoreDesignName(writableBlock, "radio");
    EXPECT_EQ(calls.Calls("IBlock::SetAttribute"), 3U) << "what cannot be read is written";
}

// The code of the result that `work` throws, or 0.
template <class Work>
int ThrownBy(const Work& work) {
    try {
        work();
    } catch (const Result& failed) {
        return failed.GetErrorCode();
    }
    return 0;
}

TEST_F(QuillData, ThrowsAWriteThatFails) {
    QuillInOrin::StoreDesignName(writableBlock, "Radio");
    Orin::DesignDb::Testing::FaultInjector faults;
    for (const char* operation : {"IBlock::SetAttribute", "IComp::SetAttribute", "IBus::SetAttribute"})
        faults.Inject({.operation = operation, .persistent = true});
    EXPECT_EQ(ThrownBy([&] { QuillInOrin::StoreDesignName(writableBlock, "Amplifier"); }), 102);
    EXPECT_EQ(ThrownBy([&] { QuillInOrin::StoreBoardBlock(writableBlock, Index(1)); }), 102);
    EXPECT_EQ(ThrownBy([&] { QuillInOrin::StoreRipperBus(writableComp, Index(1)); }), 102);
    EXPECT_EQ(ThrownBy([&] { QuillInOrin::StoreRipperSignalMap(writableComp, {}); }), 102);
    EXPECT_EQ(ThrownBy([&] { QuillInOrin::StoreBusSignals(writableBus, {}); }), 102);
    EXPECT_EQ(ThrownBy([&] { QuillInOrin::StoreBusSignalNames(writableBus, std::list<std::string>{"A"}); }), 102);
    EXPECT_EQ(BlockText("$$Internal_Design_Name"), "Radio");
    EXPECT_EQ(ThrownBy([] { QuillInOrin::StoreDesignName({}, "Radio"); }), 200) << "an empty handle";
}

// A root, a child and a grandchild block; the name asked for is that of the grandchild's place.
class HierarchicalName : public testing::Test {
protected:
    HierarchicalName() {
        const Orin::BlockTypes drawn = Orin::BlockTypes(Orin::EBlockType::Schematic) | Orin::EBlockType::Drawn;
        EXPECT_TRUE(Orin::DesignDb::Database::Create(database, "hierarchy"));
        client = database.Connect("client");
        EXPECT_TRUE(client->GetSnapshotByName(snapshot, "QUILL"));
        EXPECT_TRUE(Orin::DesignDb::Editor::Open(editor, snapshot));
        EXPECT_TRUE(editor.AddBlock({"root", drawn}, root));
        EXPECT_TRUE(editor.AddBlock({"child", drawn}, child));
        EXPECT_TRUE(editor.AddBlock({"grandchild", drawn}, grandchild));
        EXPECT_TRUE(editor.AddConfig({"default", root}, config));
        EXPECT_TRUE(editor.AddComp(root, Hierarchical("$U1", child, {}), upper));
        EXPECT_TRUE(editor.AddComp(child, Hierarchical("AMP", grandchild, Index(0x07FFFFFE00000005)), lower));
        EXPECT_TRUE(editor.AddGroup(child, {"cluster", Orin::EGroupType::Cluster}, cluster));
        EXPECT_TRUE(editor.AddGroup(child, {"1"}, sheet));
        EXPECT_TRUE(editor.AddMember(cluster, lower));
        EXPECT_TRUE(editor.AddMember(sheet, lower));
        Orin::CompDataQuill data;
        data.objectId = 4000000000;
        EXPECT_TRUE(editor.SetCompData(sheet, lower, data));
        EXPECT_TRUE(editor.SetAttribute(sheet, "$$Internal_ID", "17"));
    }

    static Orin::DesignDb::CompSpec Hierarchical(const char* label, const Index& block, const Index& index) {
        Orin::DesignDb::CompSpec spec;
        spec.label = label;
        spec.types = Orin::ECompType::Hierarchical;
        spec.childBlock = block;
        spec.index = index;
        return spec;
    }

    Orin::ContainerT<const Orin::IPath> RootPlace() {
        Orin::ContainerT<const Orin::IConfig> configuration;
        Orin::ContainerT<const Orin::IPath> place;
        EXPECT_TRUE(snapshot->GetDefaultConfig(configuration, "default") && configuration->GetRoot(place));
        return place;
    }
    std::string Name() {
        Orin::ContainerT<const Orin::IPath> upperPlace, place;
        EXPECT_TRUE(RootPlace()->GetChildPath(upperPlace, upper) && upperPlace->GetChildPath(place, lower));
        return QuillInOrin::GetHierarchicalName(place);
    }

    Orin::DesignDb::Database database;
    std::unique_ptr<Orin::OrinPI> client;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    Orin::DesignDb::Editor editor;
    Index root, child, grandchild, config, upper, lower, cluster, sheet;
};

TEST_F(HierarchicalName, IsMadeOfLabelsInstancesAndSheets) {
    const Orin::BlockTypes schematic = Orin::EBlockType::Schematic;
    const Orin::BlockTypes drawn = Orin::EBlockType::Drawn;
    EXPECT_EQ(Name(), "$U1\\$17I4000000000") << "drawn in the editor: sheet id and object id";
    for (const Orin::BlockTypes& types : {drawn, Orin::BlockTypes()}) {
        EXPECT_TRUE(editor.SetBlockTypes(child, types));
        EXPECT_EQ(Name(), "$U1\\$17I4000000000");
    }
    EXPECT_TRUE(editor.SetBlockTypes(child, schematic));
    EXPECT_EQ(Name(), "$U1\\$5I16777214") << "not drawn: the parts of the instance index below the kind";
    EXPECT_TRUE(editor.SetLabel(lower, "$X"));
    EXPECT_EQ(Name(), "$U1\\$X") << "a label stands before both";
    EXPECT_EQ(QuillInOrin::GetHierarchicalName(RootPlace()), "");
    EXPECT_EQ(QuillInOrin::GetHierarchicalName({}), "");
}

TEST_F(HierarchicalName, HasGapsForWhatTheSheetDoesNotTell) {
    EXPECT_TRUE(editor.RemoveAttribute(sheet, "$$Internal_ID"));
    EXPECT_TRUE(editor.SetAttribute(sheet, "ID", "17"));
    EXPECT_EQ(Name(), "$U1\\$I4000000000") << "the bare key is not looked for";
    EXPECT_TRUE(editor.Undraw(sheet, lower));
    EXPECT_EQ(Name(), "$U1\\") << "a component that is not drawn";
    EXPECT_TRUE(editor.RemoveMember(sheet, lower));
    EXPECT_EQ(Name(), "") << "a component on no sheet; a cluster is none";
}

TEST_F(HierarchicalName, IsEmptyOrGoesOnAfterAFailedQuery) {
    struct Case {
        const char* operation;
        unsigned call;  // the first is about the lower component
        const char* want;
    };
    const Case cases[] = {
        {"IPath::GetParentComp", 1, ""},
        {"IPath::GetParentComp", 2, "$17I4000000000"},
        {"IComp::GetPath", 1, "$17I4000000000"},
        {"IComp::GetLabel", 1, ""},
        {"IComp::GetLabel", 2, ""},
        {"IComp::GetParentBlock", 1, ""},
        {"IComp::GetInstanceIndex", 1, ""},
        {"IBlock::GetComp", 1, ""},
        {"IComp::GetListGroups", 1, ""},
        {"IBlock::GetType", 1, "$U1\\$17I4000000000"},
        {"IBlock::GetGroup", 1, "$U1\\"},
        {"IBlockViewQuill::Init", 1, "$U1\\"},
        {"IBlockViewQuill::GetCompData", 1, "$U1\\"},
        {"IGroup::GetAttribute", 1, "$U1\\$I4000000000"},
    };
    for (const Case& c : cases) {
        Orin::DesignDb::Testing::FaultInjector faults;
        faults.Inject({.operation = c.operation, .call = c.call});
        EXPECT_EQ(Name(), c.want) << c.operation << " " << c.call;
        EXPECT_EQ(faults.Failed(), 1U) << c.operation;
    }
}

}  // namespace
