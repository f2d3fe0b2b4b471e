#include "sheets/sheet_connectors_cache.h"

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "designdb/testing/fault_injector.h"
#include "tests/pages/page_design.h"

namespace Quill::Testing {
namespace {

using Orin::EObjectType;
using Orin::Index;
using Orin::DesignDb::Testing::FaultInjector;
using Hierarchy = Orin::ListT<Index>;

struct ConnectorSymbols : IPinTypeComponentsData {
    std::vector<std::string> GetComponents(int pinType) override {
        return pinType == 7 ? keys : std::vector<std::string>{"LIB:res.1"};
    }
    std::vector<std::string> keys = {"LIB:off.1", ":bare.1"};
};

constexpr Index A(EObjectType::Comp, 1, 10), B(EObjectType::Comp, 1, 11);  // two occurrences of the leaf block
constexpr Index C1(EObjectType::Comp, 2, 1), C2(EObjectType::Comp, 2, 2), C3(EObjectType::Comp, 2, 3);
constexpr Index Alone(EObjectType::Comp, 2, 4), Resistor(EObjectType::Comp, 2, 5);

// top: on sheet 1 the connector C1 and the child A, on sheet 2 C2, Alone and the child B; A and B are the block leaf
// with the connector C3. All connectors but Alone are labelled NET, and so is a resistor.
struct ConnectorDesign : PageDesign {
    ConnectorDesign() : PageDesign(std::vector<SheetSpec>{{"1"}, {"2"}}), leaf(AddBlock("leaf")) {
        Index library;
        Require(editor.AddBlock({"lib", Orin::EBlockType::Symbol}, library));
        Require(editor.AddComp(library, {.label = "", .name = "off.1"}, connectorSymbol));
        Require(editor.AddComp(library, {.label = "", .name = "res.1"}, resistorSymbol));
        const Index leafSheet = IndexOf(AddSheet(leaf, {"x"}));
        Connector(block, SheetOf(0), "NET", C1);
        Connector(block, SheetOf(1), "NET", C2);
        Connector(block, SheetOf(1), "ALONE", Alone);
        Connector(leaf, leafSheet, "NET", C3);
        AddChild(block, SheetOf(0), "$", leaf, A);
        AddChild(block, SheetOf(1), "$", leaf, B);
        AddComp(block, SheetOf(0),
                {.label = "NET", .partition = "LIB", .definition = resistorSymbol, .index = Resistor});
    }

    Index Connector(const SheetRange::Block& owner, const Index& sheet, const char* label, const Index& index = {}) {
        return AddComp(owner, sheet,
                       {.label = label, .partition = "LIB", .definition = connectorSymbol, .index = index});
    }

    SheetRange::Block leaf;
    Index connectorSymbol, resistorSymbol;
};

class SheetConnectors : public testing::Test {
protected:
    SheetConnectors() {
        cache.attachObserver(design.snapshot);
        EXPECT_TRUE(cache.reloadSheetConnectorsList(&symbols));
    }

    bool Next(const char* label, const Index& connector, const Hierarchy& hierarchy, const CSheetConnectorData** next,
              const char* path = "C:\\designs/one\\top", const char* cell = "off") {
        return cache.getNextTargetSheetConnector("LIB", cell, "1", path, label, connector, hierarchy, next);
    }
    // The keys of all targets with ";" behind each; "none" when the query says so.
    std::string All(const char* label, const Index& connector, const Hierarchy& hierarchy, const char* path = "/x/top",
                    const char* cell = "off") {
        std::list<const CSheetConnectorData*> targets = {nullptr};
        if (!cache.getAllTargetSheetConnectors("LIB", cell, "1", path, label, connector, hierarchy, targets)) {
            EXPECT_TRUE(targets.empty());
            return "none";
        }
        std::string keys;
        for (const CSheetConnectorData* const target : targets)
            keys += target->key + ';';
        return keys;
    }
    std::string Everything() {
        std::string all;
        cache.forEachSheetConnector(
            [&](const std::string& name, const std::string& label, const CSheetConnectorData& connector) {
                all += name + ' ' + label + ' ' + connector.key + '\n';
            });
        return all;
    }
    // Whether the next query collects anew.
    bool IsStale() {
        const FaultInjector calls;
        cache.isSheetConnectorSymbol("", "", "");
        return calls.Calls("ISnapshot::GetIterBlocks") != 0;
    }

    ConnectorDesign design;
    ConnectorSymbols symbols;
    CSheetConnectorsCache cache;
};

TEST_F(SheetConnectors, LeadAroundInPageOrder) {
    CSheetConnectorData at{C1, {}, "[1:2:7]"};
    for (const char* key : {"10:1:7/[3:2:7]", "[2:2:7]", "11:1:7/[3:2:7]", "[1:2:7]"}) {
        const CSheetConnectorData* next = nullptr;
        ASSERT_TRUE(Next("NET", at.index, at.hierarchy, &next));
        at = *next;
        EXPECT_EQ(at.key, key);
    }
    const CSheetConnectorData* next = nullptr;
    EXPECT_FALSE(Next("ALONE", Alone, {}, &next)) << "stands alone";
    EXPECT_EQ(next->index, Alone) << "and is told all the same";

    EXPECT_EQ(All("NET", C2, {}), "[1:2:7];10:1:7/[3:2:7];11:1:7/[3:2:7];");
    EXPECT_EQ(All("NET", C2, {A}), "[1:2:7];10:1:7/[3:2:7];[2:2:7];11:1:7/[3:2:7];") << "an unknown start: all";
    EXPECT_EQ(All("ALONE", Alone, {}), "");
    EXPECT_EQ(Everything(),
              "top ALONE [4:2:7]\ntop NET [1:2:7]\ntop NET 10:1:7/[3:2:7]\ntop NET [2:2:7]\ntop NET 11:1:7/[3:2:7]\n");

    next = nullptr;
    EXPECT_FALSE(Next("NET", C2, {A}, &next)) << "an unknown start";
    const char* const unknown[][3] = {{"OTHER", "top", "off"},
                                      {"NET", "", "off"},
                                      {"NET", "top/", "off"},
                                      {"NET", "leaf", "off"},
                                      {"NET", "top", "res"}};
    for (const auto& [label, path, cell] : unknown) {
        EXPECT_FALSE(Next(label, C2, {}, &next, path, cell)) << label << path << cell;
        EXPECT_EQ(All(label, C2, {}, path, cell), "none") << label << path << cell;
    }
    EXPECT_EQ(next, nullptr);
    EXPECT_TRUE(cache.isSheetConnectorSymbol("LIB", "off", "1") && cache.isSheetConnectorSymbol("", "bare", "1"));
    EXPECT_FALSE(cache.isSheetConnectorSymbol("LIB", "res", "1") || cache.isSheetConnectorSymbol("lib", "off", "1"));
}

TEST_F(SheetConnectors, AreCollectedFromEveryPrintedPageOfEveryDesign) {
    const SheetRange::Block block = design.AddBlock("other");
    const Index other = IndexOf(block), sheet = IndexOf(design.AddSheet(block, {"1"}));
    Index config;
    Require(design.editor.AddConfig({"other", other}, config));
    Require(design.editor.AddConfig({"leaf", other}, config));  // whose root is another block
    Require(design.editor.SetAttribute(design.SheetOf(1), "ExcludeFromPrintout", "TRUE"));
    design.AddComp(block, sheet, {.label = "Z", .definition = design.connectorSymbol, .index = Index(7)});
    EXPECT_TRUE(cache.reloadSheetConnectorsCache());
    EXPECT_EQ(Everything(), "top NET [1:2:7]\ntop NET 10:1:7/[3:2:7]\n") << "the symbol of no library is another one";
    design.Connector(block, sheet, "Z", Index(EObjectType::BlockComp, 0xFFFFFF, 0xFFFFFFFF));
    EXPECT_EQ(Everything(), "other Z [4294967295:16777215:41]\ntop NET [1:2:7]\ntop NET 10:1:7/[3:2:7]\n");
    Require(design.editor.SetBlockTypes(other, Orin::EBlockType::Drawn));
    EXPECT_TRUE(cache.reloadSheetConnectorsCache());
    EXPECT_EQ(Everything(), "top NET [1:2:7]\ntop NET 10:1:7/[3:2:7]\n") << "drawn, but no schematic";
}

TEST_F(SheetConnectors, AreCollectedAnewAfterWhatChangesThem) {
    Orin::DesignDb::Editor& edit = design.editor;
    const auto& top = design.block;
    Index index, net;
    const SheetRange::Block board = design.AddBlock("board");
    Require(edit.SetBlockTypes(IndexOf(board), Orin::EBlockType::Board));
    Require(edit.AddNet(IndexOf(top), {"N"}, net));
    const auto add = [&] { index = design.Connector(top, design.SheetOf(0), "NET"); };
    const std::tuple<const char*, bool, std::function<void()>> cases[] = {
        {"nothing", false, [] {}},
        {"a connector is added", true, add},
        {"relabelled", true, [&] { Require(edit.SetLabel(index, "OTHER")); }},
        {"renamed", true, [&] { Require(edit.SetName(index, "name")); }},
        {"given an attribute", false, [&] { Require(edit.SetAttribute(index, "a", "b")); }},
        {"taken off its sheet", false, [&] { Require(edit.RemoveMember(design.SheetOf(0), index)); }},
        {"deleted", true, [&] { Require(edit.DeleteComp(index)); }},
        {"added in a transaction", true,
         [&] {
             Require(design.snapshot->BeginTransaction(Orin::ETransactionType::Edit));
             add();
         }},
        {"and taken back", true, [&] { Require(design.snapshot->RollbackTransaction()); }},
        {"added on another thread", true, [&] { std::thread(add).join(); }},
        {"a connector outside of schematics is added", false, [&] { index = design.Connector(board, {}, "NET"); }},
        {"relabelled", false, [&] { Require(edit.SetLabel(index, "OTHER")); }},
        {"a resistor is relabelled", false, [&] { Require(edit.SetLabel(Resistor, "R")); }},
        {"deleted", false, [&] { Require(edit.DeleteComp(Resistor)); }},
        {"a net is relabelled", false, [&] { Require(edit.SetLabel(net, "M")); }},
        {"deleted", false, [&] { Require(edit.DeleteNet(net)); }},
        {"a sheet is renamed", false, [&] { Require(edit.SetName(design.SheetOf(0), "one")); }},
        {"a block with connectors is deleted", true, [&] { Require(edit.DeleteBlock(IndexOf(design.leaf))); }},
        {"other symbols are connectors", false,
         [&] {
             symbols.keys = {"LIB:res.1"};
             EXPECT_TRUE(cache.reloadSheetConnectorsList(&symbols));
         }},
        {"a connector of yesterday is deleted", false, [&] { Require(edit.DeleteComp(C1)); }},
        {"null keeps the symbols", false, [&] { EXPECT_TRUE(cache.reloadSheetConnectorsList(nullptr)); }},
    };
    for (const auto& [why, stale, change] : cases) {
        change();
        EXPECT_EQ(IsStale(), stale) << why;
        EXPECT_FALSE(IsStale()) << why;
    }
    EXPECT_TRUE(cache.isSheetConnectorSymbol("LIB", "res", "1"));
}

TEST_F(SheetConnectors, AreThoseOfTheAttachedDesignAlone) {
    const std::string collected = Everything();
    cache.detachObserver();
    Require(design.editor.DeleteComp(C1));
    EXPECT_FALSE(cache.reloadSheetConnectorsCache());
    EXPECT_EQ(Everything(), collected) << "what was collected still answers";

    ConnectorDesign second;
    Require(second.editor.DeleteComp(C2));
    cache.attachObserver(second.snapshot);
    EXPECT_EQ(All("NET", C1, {}), "10:1:7/[3:2:7];11:1:7/[3:2:7];");
    Require(design.editor.DeleteComp(C2));
    EXPECT_FALSE(IsStale()) << "a design that was detached";
    Require(second.editor.DeleteComp(Alone));
    EXPECT_TRUE(IsStale());

    cache.attachObserver({});
    EXPECT_FALSE(cache.reloadSheetConnectorsCache());

    cache.attachObserver(second.snapshot);
    CSheetConnectorsCache().attachObserver(second.snapshot);
    Require(second.editor.DeleteComp(C1));  // would call what is gone
}

}  // namespace
}  // namespace Quill::Testing
