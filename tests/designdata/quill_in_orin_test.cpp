#include "designdata/quill_in_orin.h"

#include "designdb/testing/fault_injector.h"
#include "tests/support/small_design.h"

namespace {

using Orin::EAttributeType;
using Orin::Index;
using Orin::Result;
using Quill::Utils::QuillInOrin;
using Signals = QuillInOrin::BusSignals;

constexpr EAttributeType Link = EAttributeType::Link;

using QuillData = Tests::SmallDesign;

TEST_F(QuillData, IsStoredInOneEncodingAndComesBack) {
    std::string name;
    QuillInOrin::StoreDesignName(writableBlock, "Radio, rev. 2");
    EXPECT_EQ(Value(block, "$$Internal_Design_Name"), "Radio, rev. 2");
    EXPECT_TRUE(QuillInOrin::GetDesignName(*block, name) && name == "Radio, rev. 2");

    Index index;
    QuillInOrin::StoreBoardBlock(writableBlock, Index(18446744073709551615U));
    EXPECT_EQ(Value(block, "$$Internal_BoardUid"), "18446744073709551615");
    EXPECT_TRUE(QuillInOrin::GetBoardBlock(*block, index) && index == 18446744073709551615U);
    QuillInOrin::StoreRipperBus(writableComp, Index(4294967301));
    EXPECT_EQ(Value(comp, "$$Internal____Bus", Link), "4294967301");
    EXPECT_TRUE(QuillInOrin::GetRipperBus(*comp, index) && index == 4294967301U);

    std::map<int, int> map = {{4, 7}, {9, 9}};
    QuillInOrin::StoreRipperSignalMap(writableComp, {{4, 1}, {3, 0}, {-1, -2}});
    EXPECT_EQ(Value(comp, "$$Internal____SignalMap", Link), "-1,-2,3,0,4,1");
    EXPECT_TRUE(QuillInOrin::GetRipperSignalMap(*comp, map));
    EXPECT_EQ(map, (std::map<int, int>{{-1, -2}, {3, 0}, {4, 1}, {9, 9}})) << "merged, and the stored value wins";

    Signals signals = {{5, Index(5)}};
    QuillInOrin::StoreBusSignals(writableBus, {{0, Index(4294967301)}, {-1, Index(4294967302)}});
    EXPECT_EQ(Value(bus, "$$Internal____Signals"), "0,4294967301,-1,4294967302");
    EXPECT_TRUE(QuillInOrin::GetBusSignals(*bus, signals));
    EXPECT_EQ(signals, (Signals{{5, Index(5)}, {0, Index(4294967301)}, {-1, Index(4294967302)}})) << "appended";

    std::list<std::string> list = {"what stood there"};
    std::vector<std::string> vector = {"what stood there"};
    QuillInOrin::StoreBusSignalNames(writableBus, std::list<std::string>{"A0", "CLK"});
    EXPECT_EQ(Value(bus, "$$Internal____SignalNames"), "A0,CLK");
    EXPECT_TRUE(QuillInOrin::GetBusSignalNames(*bus, vector) && QuillInOrin::GetBusSignalNames(*bus, list));
    EXPECT_EQ(vector, (std::vector<std::string>{"A0", "CLK"})) << "replaced";
    EXPECT_EQ(list, (std::list<std::string>{"A0", "CLK"}));
}

TEST_F(QuillData, OfOlderDesignsIsReadUnderTheBareKey) {
    Index bus1(1);
    EXPECT_TRUE(editor.SetAttribute(compIndex, "$$Internal____Bus", "5", EAttributeType::System));
    EXPECT_TRUE(!QuillInOrin::GetRipperBus(*comp, bus1) && bus1 == 1U) << "the right key in the wrong family";
    EXPECT_TRUE(editor.SetAttribute(compIndex, "___Bus", "5", Link));
    EXPECT_TRUE(QuillInOrin::GetRipperBus(*comp, bus1) && bus1 == 5U);
    QuillInOrin::StoreRipperBus(writableComp, Index(5));
    EXPECT_EQ(Value(comp, "$$Internal____Bus", Link), "5") << "the same value moves to the mangled key";
    QuillInOrin::StoreRipperBus(writableComp, Index(6));
    EXPECT_EQ(Value(comp, "___Bus", Link), "5");
    EXPECT_TRUE(QuillInOrin::GetRipperBus(*comp, bus1) && bus1 == 6U) << "the mangled key is looked for first";
}

TEST_F(QuillData, ExistsWhenEmptyOrDamaged) {
    const std::tuple<const char*, std::vector<std::string>, Signals, std::map<int, int>> cases[] = {
        {"A0,,A1", {"A0", "A1"}, {{0, Index(0)}}, {{0, 0}}},
        {",,3,7,", {"3", "7"}, {{3, Index(7)}}, {{3, 7}}},
        {"3,7,4", {"3", "7", "4"}, {{3, Index(7)}}, {{3, 7}}},
        {",", {}, {}, {}},
        {"5x, 6,1,2,5,9",
         {"5x", " 6", "1", "2", "5", "9"},
         {{5, Index(6)}, {1, Index(2)}, {5, Index(9)}},
         {{1, 2}, {5, 9}}},
        {"4294967297,99999999999999999999",  // positions wrap where the numbers of a map saturate
         {"4294967297", "99999999999999999999"},
         {{1, Index(18446744073709551615U)}},
         {{2147483647, 2147483647}}},
    };
    for (const auto& [text, asNames, asSignals, asMap] : cases) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(editor.SetAttribute(busIndex, "$$Internal____SignalNames", text));
        EXPECT_TRUE(editor.SetAttribute(busIndex, "$$Internal____Signals", text));
        EXPECT_TRUE(editor.SetAttribute(compIndex, "$$Internal____SignalMap", text, Link));
        std::vector<std::string> names;
        Signals signals;
        std::map<int, int> map;
        EXPECT_TRUE(QuillInOrin::GetBusSignalNames(*bus, names) && names == asNames);
        EXPECT_TRUE(QuillInOrin::GetBusSignals(*bus, signals) && signals == asSignals);
        EXPECT_TRUE(QuillInOrin::GetRipperSignalMap(*comp, map) && map == asMap);
    }
    Index index(1);
    EXPECT_TRUE(editor.SetAttribute(blockIndex, "$$Internal_BoardUid", "board"));
    EXPECT_TRUE(QuillInOrin::GetBoardBlock(*block, index) && index.IsEmpty()) << "no number is 0, and it exists";
}

TEST_F(QuillData, IsWrittenOnlyWhenItsTextChanges) {
    Orin::DesignDb::Testing::FaultInjector calls;
    QuillInOrin::StoreBusSignalNames(writableBus, std::vector<std::string>{"A0", "A1"});
    QuillInOrin::StoreBusSignalNames(writableBus, std::list<std::string>{"A0,A1"});  // another list, the same text
    EXPECT_EQ(calls.Calls("IBus::SetAttribute"), 1U);
    QuillInOrin::StoreDesignName(writableBlock, "Radio");
    QuillInOrin::StoreDesignName(writableBlock, "radio");
    EXPECT_EQ(calls.Calls("IBlock::SetAttribute"), 2U);
    calls.Inject({"IBlock::GetAttribute"});
    QuillInOrin::StoreDesignName(writableBlock, "radio");
    EXPECT_EQ(calls.Calls("IBlock::SetAttribute"), 3U) << "what cannot be read is written";
    EXPECT_THROW(QuillInOrin::StoreDesignName({}, "Radio"), Result) << "an empty handle";
}

// A child and a grandchild block below the top; the name asked for is that of the grandchild's place.
class HierarchicalName : public Tests::SmallDesign {
protected:
    HierarchicalName() {
        writableBlock.Release();
        const Orin::BlockTypes drawn = Orin::BlockTypes(Orin::EBlockType::Schematic) | Orin::EBlockType::Drawn;
        Index grandchild, config, cluster;
        EXPECT_TRUE(editor.AddBlock({"child", drawn}, child) && editor.AddBlock({"grandchild", drawn}, grandchild));
        EXPECT_TRUE(editor.AddConfig({"default", blockIndex}, config));
        const Orin::CompTypes type = Orin::ECompType::Hierarchical;
        EXPECT_TRUE(editor.AddComp(blockIndex, {.label = "$U1", .types = type, .childBlock = child}, upper));
        EXPECT_TRUE(editor.AddComp(
            child, {.label = "AMP", .types = type, .childBlock = grandchild, .index = Index(0x07FFFFFE00000005)},
            lower));
        EXPECT_TRUE(editor.AddGroup(child, {"cluster", Orin::EGroupType::Cluster}, cluster));
        EXPECT_TRUE(editor.AddGroup(child, {"1"}, childSheet));
        EXPECT_TRUE(editor.AddMember(cluster, lower) && editor.AddMember(childSheet, lower));
        Orin::CompDataQuill data;
        data.objectId = 4000000000;
        EXPECT_TRUE(editor.SetCompData(childSheet, lower, data));
        EXPECT_TRUE(editor.SetAttribute(childSheet, "$$Internal_ID", "17"));
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

    Index child, childSheet, upper, lower;
};

TEST_F(HierarchicalName, IsMadeOfLabelsInstancesAndSheets) {
    EXPECT_EQ(Name(), "$U1\\$17I4000000000") << "drawn in the editor: sheet id and object id";
    for (const Orin::BlockTypes& types : {Orin::BlockTypes(Orin::EBlockType::Drawn), Orin::BlockTypes()}) {
        EXPECT_TRUE(editor.SetBlockTypes(child, types));
        EXPECT_EQ(Name(), "$U1\\$17I4000000000");
    }
    EXPECT_TRUE(editor.SetBlockTypes(child, Orin::EBlockType::Schematic));
    EXPECT_EQ(Name(), "$U1\\$5I16777214") << "not drawn: the parts of the instance index below the kind";
    EXPECT_TRUE(editor.SetLabel(lower, "$X"));
    EXPECT_EQ(Name(), "$U1\\$X") << "a label stands before both";
    EXPECT_EQ(QuillInOrin::GetHierarchicalName(RootPlace()), "");
    EXPECT_EQ(QuillInOrin::GetHierarchicalName({}), "");
}

TEST_F(HierarchicalName, HasGapsForWhatTheSheetDoesNotTell) {
    EXPECT_TRUE(editor.RemoveAttribute(childSheet, "$$Internal_ID"));
    EXPECT_TRUE(editor.SetAttribute(childSheet, "ID", "17"));
    EXPECT_EQ(Name(), "$U1\\$I4000000000") << "the bare key is not looked for";
    EXPECT_TRUE(editor.Undraw(childSheet, lower));
    EXPECT_EQ(Name(), "$U1\\") << "a component that is not drawn";
    EXPECT_TRUE(editor.RemoveMember(childSheet, lower));
    EXPECT_EQ(Name(), "") << "a component on no sheet; a cluster is none";
}

TEST_F(HierarchicalName, GoesOnAfterMostFailedQueries) {
    // The first call of an operation is about the lower component.
    const std::tuple<const char*, unsigned, const char*> cases[] = {
        {"IPath::GetParentComp", 1, ""},
        {"IPath::GetParentComp", 2, "$17I4000000000"},
        {"IComp::GetPath", 1, "$17I4000000000"},
        {"IComp::GetLabel", 2, ""},
        {"IBlock::GetType", 1, "$U1\\$17I4000000000"},
        {"IBlock::GetGroup", 1, "$U1\\"},
        {"IBlockViewQuill::Init", 1, "$U1\\"},
        {"IBlockViewQuill::GetCompData", 1, "$U1\\"},
        {"IGroup::GetAttribute", 1, "$U1\\$I4000000000"},
    };
    for (const auto& [operation, call, want] : cases) {
        Orin::DesignDb::Testing::FaultInjector faults;
        faults.Inject({.operation = operation, .call = call});
        EXPECT_EQ(Name(), want) << operation << " " << call;
        EXPECT_EQ(faults.Failed().size(), 1U) << operation;
    }
}

}  // namespace
