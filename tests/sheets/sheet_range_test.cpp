#include "sheets/sheet_range.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "designdb/testing/fault_injector.h"
#include "sheet_design.h"

namespace Quill::Testing {
namespace {

using Orin::DesignDb::Testing::FaultInjector;
using Sheets = std::vector<SheetRange::Sheet>;

const std::vector<SheetSpec> Five = {{"1", "1", "1"}, {"2", "2", "2"}, {"3", "3", "3"}, {"4", "4"}, {"5", "5"}};
const char* const FiveStored = "1=1 2=2 3=3 4=4 5=5 ";

SheetRange Load(const SheetDesign& design) {
    SheetRange range;
    range.Init(design.block);
    return range;
}

std::string NameOf(const SheetRange::Sheet& sheet) {
    Orin::String name;
    Require(sheet->GetName(name));
    return std::string(name.View());
}

// The names in the range's order: "A C B ".
std::string Order(const SheetRange& range) {
    std::string text;
    for (auto it = range.Begin(); it != range.End(); it++)
        text += NameOf(*it) + " ";
    return text;
}

// The sheets in the order of their making, each with its stored order: "A=2 B= C=1 ".
std::string Stored(const SheetDesign& design) {
    std::string text;
    for (const SheetRange::Sheet& sheet : design.sheets) {
        Orin::String order;
        static_cast<void>(sheet->GetAttribute("$$Internal_CUSTOM_ORDER", order));
        text += NameOf(sheet) + "=" + std::string(order.View()) + " ";
    }
    return text;
}

TEST(SheetRange, SheetsWithoutAnOrderComeLastAsTheyAreListed) {
    const auto cluster = Orin::EGroupType::Cluster, generated = Orin::EGroupType::GeneratedSheet;
    std::vector<SheetSpec> specs = {
        {"none"}, {"tie", "3.5"}, {"cluster", "1", "9", cluster}, {"made", "13", "", generated}};
    for (const char* order : {"-0.0", "word", "nan", "3e0", "-7", "3.5", " 12x", "2147483647", "1e10"})
        specs.push_back({order, order});
    SheetRange range = Load(SheetDesign(specs));
    EXPECT_EQ(Order(range), "-7 3e0 tie 3.5  12x made none -0.0 word nan 2147483647 1e10 ");
    EXPECT_EQ(range.Count(), 12);
    EXPECT_FALSE(range.NameAlreadyExists("cluster"));
    std::string name;
    range.CreateNewName(name);
    EXPECT_EQ(name, "2");  // the cluster's id does not count, and without ids the search begins above 1
}

TEST(SheetRange, WritesOnlySheetsWhoseStoredOrderChanges) {
    const SheetDesign design(Five);
    SheetRange range = Load(design);
    FaultInjector calls;
    EXPECT_TRUE(range.MoveUp(design.sheets[2]));
    EXPECT_TRUE(calls.Calls("IGroup::SetAttribute") == 2 && calls.Calls("IGroup::GetAttribute") == 0);
    EXPECT_EQ(Stored(design), "1=1 2=3 3=2 4=4 5=5 ");
    EXPECT_TRUE(range.MoveDown(design.sheets[2]));  // what was written is known without another look
    EXPECT_TRUE(range.MoveTo({}, design.sheets[0], true));
    EXPECT_EQ(calls.Calls("IGroup::SetAttribute"), 4u);
    EXPECT_EQ(Stored(design), FiveStored);

    // Orders that are no ordinals are all put right with the first move, whatever it moves.
    const SheetDesign gaps({{"a", "10"}, {"b", "2"}, {"c", "20"}, {"d"}});
    EXPECT_TRUE(Load(gaps).MoveUp(gaps.sheets[3]));
    EXPECT_EQ(Stored(gaps), "a=2 b=1 c=4 d=3 ");
}

// Takes the moved sheets out and puts them at the target's place, in the order that they had.
void MoveNaively(std::vector<unsigned>& order, const std::set<unsigned>& moved, unsigned target, bool after) {
    const auto begin = order.begin(), end = order.end();
    const auto stays = [&moved](unsigned sheet) { return moved.count(sheet) == 0; };
    const auto place = std::find(begin, end, target) + (after ? 1 : 0);
    std::stable_partition(begin, place, stays);
    std::stable_partition(place, end, std::not_fn(stays));
}

TEST(SheetRange, AgreesWithANaiveListUnderRandomMoves) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const unsigned count = 2 + seed % 13;
        const auto draw = [&random](std::size_t below) { return static_cast<unsigned>(random() % below); };
        std::vector<unsigned> model(count);
        std::iota(model.begin(), model.end(), 0U);
        std::vector<SheetSpec> specs;
        for (const unsigned sheet : model)
            specs.push_back({std::to_string(sheet)});
        SheetDesign design(specs);
        const SheetRange::Sheet stranger = design.AddSheet(design.AddBlock("other"), {"stranger"});
        SheetRange range = Load(design);
        for (int step = 0; step < 25; ++step) {
            const unsigned kind = draw(4), target = draw(count);
            if (kind < 2) {
                const bool down = kind == 1;
                const auto place = std::find(model.begin(), model.end(), target);
                const bool can = down ? place + 1 != model.end() : place != model.begin();
                EXPECT_EQ(down ? range.MoveDown(design.sheets[target]) : range.MoveUp(design.sheets[target]), can);
                if (can) std::iter_swap(place, down ? place + 1 : place - 1);
            } else {
                std::set<unsigned> moved;
                Sheets handles(draw(count + 1));  // in any order, some more than once
                for (SheetRange::Sheet& handle : handles)
                    handle = design.sheets[*moved.insert(draw(count)).first];
                const bool after = draw(2) == 0, known = draw(8) != 0;
                if (!known) handles.insert(handles.begin() + static_cast<int>(draw(handles.size() + 1)), stranger);
                EXPECT_EQ(range.MoveTo(handles, design.sheets[target], after), known);
                if (known) MoveNaively(model, moved, target, after);
            }
            std::string want;
            for (const unsigned sheet : model)
                want += std::to_string(sheet) + " ";
            ASSERT_EQ(Order(range), want);
            if (draw(3) != 0) range = Load(design);
            ASSERT_EQ(Order(range), want);  // what was stored is what is shown
        }
    }
}

TEST(SheetRange, WritesJoinTheCallersTransaction) {
    const SheetDesign design(Five);
    SheetRange range = Load(design);
    Require(design.snapshot->BeginTransaction(Orin::ETransactionType::Edit));
    FaultInjector faults;
    EXPECT_TRUE(range.MoveUp(design.sheets[1]));
    EXPECT_TRUE(range.Renumber({design.sheets[0]}, {"", 9, 1}));
    faults.Inject({"IGroup::SetAttribute", {}, 2});
    EXPECT_THROW(range.MoveUp(design.sheets[4]), Orin::Result);
    EXPECT_EQ(Order(range), "2 9 3 4 5 ");
    EXPECT_EQ(Stored(design), "9=2 2=1 3=3 4=4 5=4 ");
    for (const char* operation : {"BeginTransaction", "CommitTransaction", "RollbackTransaction"})
        EXPECT_EQ(faults.Calls(std::string("ISnapshot::") + operation), 0u) << operation;

    // A sheet that the database ceases to know between two looks ends even the caller's transaction.
    faults.Inject({"IObject::GetIndex", {}, 2});
    EXPECT_FALSE(range.MoveUp(design.sheets[4]));
    EXPECT_FALSE(design.snapshot->RollbackTransaction());
    EXPECT_EQ(Stored(design), FiveStored);
}

TEST(SheetRange, AnObserverMayReloadTheRangeWithinItsOwnWrites) {
    const SheetDesign design(Five);
    struct Reloader : Orin::EventObserver {
        SheetRange range;
        SheetRange::Block block;
        void OnAfterChange(const Orin::Index& object, Orin::EEventsChange kind, bool) override {
            if (SheetRange::IsOrderChanged(block, object, kind)) range.Init(block);
        }
    } reloader;
    SheetRange& range = reloader.range;
    range.Init(reloader.block = design.block);
    Require(design.snapshot->AddEventObserver(&reloader));
    EXPECT_TRUE(range.MoveTo({design.sheets[3], design.sheets[4]}, design.sheets[0], false));
    Require(design.snapshot->RemoveEventObserver(&reloader));
    EXPECT_EQ(Order(range), "4 5 1 2 3 ");
    EXPECT_EQ(Stored(design), "1=3 2=4 3=5 4=1 5=2 ");
}

TEST(SheetRange, OnlyAttributesSetOnTheBlocksOwnGroupsChangeItsOrder) {
    SheetDesign design(Five);
    const Orin::Index sheet = IndexOf(design.sheets[0]);
    Orin::Index nested;
    Require(design.editor.AddGroup(sheet, {"nested"}, nested));
    const auto set = Orin::EEventsChange::SetAttribute;
    EXPECT_TRUE(SheetRange::IsOrderChanged(design.block, sheet, set));
    EXPECT_FALSE(SheetRange::IsOrderChanged(design.block, sheet, Orin::EEventsChange::RemoveAttribute));
    EXPECT_FALSE(SheetRange::IsOrderChanged(design.AddBlock("other"), sheet, set));
    for (const Orin::Index& other : {nested, IndexOf(design.block)})
        EXPECT_FALSE(SheetRange::IsOrderChanged(design.block, other, set));
}

TEST(SheetRange, LoadsTheOnlyBlockOfAName) {
    SheetDesign design(Five);
    design.AddBlock("twice");
    design.AddBlock("twice");
    SheetRange range;
    EXPECT_TRUE(range.Init(design.snapshot, "top"));
    EXPECT_FALSE(range.Init(design.snapshot, "twice") || range.Init(design.snapshot, "TOP"));
    EXPECT_EQ(range.Count(), 5);
}

TEST(SheetRange, FindsAndComparesSheets) {
    SheetDesign design({{"b", "2"}, {"A", "1"}, {"b", "3"}});
    const SheetRange::Sheet stranger = design.AddSheet(design.AddBlock("other"), {"stranger"});
    const SheetRange range = Load(design);
    EXPECT_TRUE(range.Find("b") == ++range.Begin() && range.Find("a") == range.End());
    EXPECT_TRUE(range.Find(design.sheets[2]) == --range.End() && range.Find(stranger) == range.End());
    EXPECT_FALSE(range.CanMoveUp(design.sheets[1]) || range.CanMoveDown(design.sheets[2]) || range.CanMoveUp(stranger));
    EXPECT_TRUE(range.Compare(design.sheets[2], stranger) && !range.Compare(stranger, {}));
    EXPECT_FALSE(range.CanMoveTo(design.sheets, design.sheets[1], true));
    EXPECT_TRUE(range.CanMoveTo(design.sheets, stranger, true));
    Sheets sheets = {stranger, design.sheets[2], {}, design.sheets[1], design.sheets[0]};
    const Sheets sorted = {design.sheets[1], design.sheets[0], design.sheets[2], stranger, {}};
    range.Sort(sheets);
    for (std::size_t i = 0; i < sheets.size(); ++i)
        EXPECT_EQ(sheets[i].Get(), sorted[i].Get()) << i;
}

TEST(SheetRange, AdvanceStopsAtItsLimitAndAtBothEnds) {
    const SheetDesign design(Five);
    const SheetRange range = Load(design);
    const auto at = [&range](int place) { return std::next(range.Begin(), place); };
    const int cases[][4] = {
        // from, steps, limit, where it stops
        {1, 2, 5, 3}, {1, 4, 3, 3}, {4, -3, 0, 1}, {4, -3, 2, 2},         {2, 0, 5, 2},
        {2, 3, 2, 2}, {3, 9, 1, 5}, {2, -9, 4, 0}, {3, 2147483647, 5, 5}, {3, -2147483647 - 1, 0, 0}};
    for (const auto& [from, steps, limit, want] : cases) {
        SheetRange::Iterator it = at(from);
        SheetRange::Advance(it, steps, at(limit));
        EXPECT_TRUE(it == at(want)) << from << " by " << steps << " up to " << limit;
    }
}

TEST(SheetRange, FreshNamesAndIdsAreThoseOfASearchFromTheStart) {
    SheetRange range = Load(SheetDesign(Five));
    std::string name;
    range.CreateNewName(name);
    EXPECT_EQ(name, "6");  // above the largest id, 3, and past the names "4" and "5"
    EXPECT_EQ(range.CreateNewId("99999999999"), 2147483647);
    EXPECT_EQ(range.CreateNewId("2147483647"), 4);  // there is none above
    range.CreateNewName(name);
    EXPECT_EQ(name, "2147483648");

    const char* const texts[] = {"A", "A_1", "7", "9", "", "-3", "0", "12b"};
    for (unsigned seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::set<std::string> names;
        std::set<int> ids;
        range = SheetRange();
        for (int step = 0; step < 60; ++step) {
            const std::string text = texts[random() % std::size(texts)];
            const auto kind = random() % 3;
            if (kind == 0) {
                int id = std::atoi(text.c_str());
                for (id = id == 0 ? 1 : id; !ids.insert(id).second;)
                    ++id;
                ASSERT_EQ(range.CreateNewId(text), id);
                continue;
            }
            int number = kind == 2 ? 1 : ids.empty() ? 2 : *ids.rbegin() + 1;
            std::string want = kind == 2 ? text : std::to_string(number++);
            while (!names.insert(want).second)
                want = (kind == 2 ? text + "_" : "") + std::to_string(number++);
            if (kind == 2)
                range.CreateNewName(text, name);
            else
                range.CreateNewName(name);
            ASSERT_EQ(name, want);
            ASSERT_TRUE(range.NameAlreadyExists(want));
        }
    }
}

TEST(SheetRange, RenumberIsCheckedAgainstTheOtherSheetsOnly) {
    const SheetDesign design({{"1"}, {"2"}, {"4"}});
    SheetRange range = Load(design);
    const Sheets firstTwo = {design.sheets[0], design.sheets[1]};
    EXPECT_TRUE(range.ValidateRenumber(firstTwo, {"", 2, 1}));
    EXPECT_FALSE(range.ValidateRenumber(firstTwo, {"", 3, 1}));
    EXPECT_TRUE(range.ValidateRenumber(firstTwo, {"", 3, 0}));  // the same name twice is no clash
    EXPECT_TRUE(range.Renumber(firstTwo, {"", 2147483647, 1}));
    EXPECT_EQ(Stored(design), "2147483647= 2147483648= 4= ");
    EXPECT_FALSE(range.ValidateRenumber(firstTwo, {"", 1, 1}));  // the old names count until the range is loaded again
    EXPECT_TRUE(range.Renumber(firstTwo, {"", 4, 0}));           // refuses no clash
    EXPECT_EQ(Stored(design), "4= 4= 4= ");
}

}  // namespace
}  // namespace Quill::Testing
