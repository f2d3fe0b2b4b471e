// The page walk beside a second one, written down as naively as possible over the plan from which the design was built.

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "designdata/quill_in_orin.h"
#include "tests/pages/page_design.h"

namespace Quill::Testing {
namespace {

using Orin::Index;
using Way = std::vector<Index>;  // the hierarchical components down to a place
using Key = std::pair<Way, Index>;

struct PlannedSheet {
    Index index;
    bool excluded = false;
    std::vector<Index> listed = {}, ordered = {};  // the components in the default and in the custom order
};

// A design at random. How components are ordered is left to the tests of the order suppliers.
struct Plan : PageDesign {
    explicit Plan(unsigned seed) : random(seed) {
        std::vector<SheetRange::Block> handles = {block};
        for (unsigned more = Roll(8); more > 0; --more)
            handles.push_back(AddBlock("block"));
        const auto drawn = Orin::BlockTypes(Orin::EBlockType::Schematic) | Orin::EBlockType::Drawn;
        for (const SheetRange::Block& owner : handles) {
            if (Roll(2) == 0) Require(editor.SetBlockTypes(IndexOf(owner), drawn));
            AddSheets(owner);
            AddComps(handles, owner);
        }
    }

    unsigned Roll(std::size_t sides) { return static_cast<unsigned>(random() % sides); }

    void AddSheets(const SheetRange::Block& owner) {
        static constexpr const char* Flags[] = {"TRUE", "true", "yes", "TRUE "};
        std::vector<PlannedSheet>& planned = blocks.emplace_back();
        const unsigned count = Roll(10) == 0 ? 0 : 1 + Roll(3);
        for (unsigned place = 0; place < count; ++place) {
            // Blocks below the root list their sheets in an order of their own.
            const bool backwards = count > 1 && blocks.size() > 1;
            const std::string order = backwards ? std::to_string(count - place) : "";
            PlannedSheet sheet{IndexOf(AddSheet(owner, {"s" + std::to_string(place), order, std::to_string(place)}))};
            if (const unsigned flag = Roll(40); flag < 4) {
                Require(editor.SetAttribute(sheet.index, "ExcludeFromPrintout", Flags[flag]));
                sheet.excluded = flag < 2;
            }
            planned.insert(backwards ? planned.begin() : planned.end(), sheet);
        }
    }

    void AddComps(const std::vector<SheetRange::Block>& handles, const SheetRange::Block& owner) {
        std::vector<Index> comps;
        for (unsigned i = 2 + Roll(4); i > 0; --i) {
            const bool isHierarchical = Roll(8) != 0, leadsDown = Roll(8) != 0;
            const std::size_t child = Roll(handles.size());
            comps.push_back(AddComp(owner, {},
                                    {.label = Roll(2) != 0 ? "$b" : "",
                                     .types = isHierarchical ? Orin::ECompType::Hierarchical : Orin::ECompType::Part,
                                     .childBlock = leadsDown ? IndexOf(handles[child]) : Index()}));
            if (leadsDown) children[comps.back()] = child;
            for (PlannedSheet& sheet : blocks.back()) {
                if (Roll(2) != 0) continue;  // on no sheet, on one, or on several
                Require(editor.AddMember(sheet.index, comps.back()));
                if (isHierarchical && leadsDown) sheet.listed.push_back(comps.back());
                Orin::CompDataQuill data;
                data.objectId = Roll(100);
                if (Roll(2) == 0) Require(editor.SetCompData(sheet.index, comps.back(), data));
            }
        }
        for (PlannedSheet& sheet : blocks.back())
            StoreOrder(comps, sheet);
    }

    // Of some of the block's components, on the sheet or not, and of strangers, until the end or a damaged field.
    void StoreOrder(const std::vector<Index>& comps, PlannedSheet& sheet) {
        std::string text;
        for (unsigned i = Roll(5); i > 0; --i) {
            sheet.ordered.push_back(Roll(5) != 0 ? comps[Roll(comps.size())] : Index(1 + Roll(2)));
            text += OrderField(sheet.ordered.back());
        }
        const bool isDamaged = Roll(3) == 0;
        if (isDamaged) text += "             damaged";
        const bool isStored = Roll(2) == 0;
        if (isStored) Require(editor.SetAttribute(sheet.index, "$$Internal_COMPS_ORDER", text.c_str()));
        if (!isStored) sheet.ordered.clear();
        if (!isStored || isDamaged) sheet.ordered.insert(sheet.ordered.end(), sheet.listed.begin(), sheet.listed.end());
    }

    std::mt19937 random;
    std::vector<std::vector<PlannedSheet>> blocks;  // in sheet order
    std::map<Index, std::size_t> children;          // the blocks that the components lead to
};

struct NaiveWalk {
    NaiveWalk(const Plan& plan, bool byLevel, std::vector<Index> PlannedSheet::*order) : design(plan), shown(order) {
        Visit(0, {}, {0}, {}, false);
        std::stable_sort(sequence.begin(), sequence.end(),
                         [&](const Key& a, const Key& b) { return byLevel && a.first.size() < b.first.size(); });
    }

    void Visit(std::size_t block, const Way& way, const std::set<std::size_t>& above, const Key& parent, bool below) {
        for (const PlannedSheet& sheet : design.blocks[block]) {
            const Key page(way, sheet.index);
            pagesBelow[parent].push_back(page);
            if (std::count(sequence.begin(), sequence.end(), page) == 0) {
                sequence.push_back(page);
                if (below || sheet.excluded) excluded.insert(page);
            }
            bool isLeaf = true;
            for (const Index& comp : sheet.*shown) {
                const auto child = design.children.find(comp);
                if (child == design.children.end() || above.count(child->second) != 0) continue;
                Way further = way;
                further.push_back(comp);
                std::set<std::size_t> blocks = above;
                blocks.insert(child->second);
                Visit(child->second, further, blocks, page, below || sheet.excluded);
                isLeaf = false;
            }
            if (isLeaf) pagesBelow[page].push_back(page);
        }
    }

    // The page and those below it; none when nothing is recorded below it.
    std::set<Key> From(const Key& page) const {
        std::set<Key> found;
        if (pagesBelow.count(page) != 0) Collect(page, found);
        return found;
    }
    void Collect(const Key& page, std::set<Key>& found) const {
        const auto below = pagesBelow.find(page);
        if (!found.insert(page).second || below == pagesBelow.end()) return;
        for (const Key& key : below->second)
            Collect(key, found);
    }

    const Plan& design;
    std::vector<Index> PlannedSheet::*const shown;
    std::vector<Key> sequence;  // with the excluded pages
    std::set<Key> excluded;
    std::map<Key, std::vector<Key>> pagesBelow;
};

// Finds the page in the design, where its name comes from, too.
Key KeyOf(const Plan& plan, const PageID& page) {
    Orin::ContainerT<const Orin::IPath> path;
    Orin::ContainerT<const Orin::IGroup> sheet;
    Orin::ListT<Index> way;
    Orin::String sheetName;
    Require(plan.objects.GetPath(path, page.path));
    Require(path->GetListHierarchyIndexes(way));
    Require(plan.objects.GetGroup(sheet, page.group));
    Require(sheet->GetName(sheetName));
    const std::string place = Utils::QuillInOrin::GetHierarchicalName(path);
    EXPECT_EQ(page.name, (place.empty() ? place : place + '\\') + static_cast<const char*>(sheetName));
    return {Way(way.begin(), way.end()), page.group};
}

// Gives the pages in the order of iteration.
std::vector<PageID> Compare(const Plan& plan, const PageTraverser& traverser, const NaiveWalk& naive) {
    std::vector<Key> want = naive.sequence, keys;
    std::erase_if(want, [&](const Key& key) { return naive.excluded.count(key) != 0; });
    std::vector<PageID> pages;
    for (PageID page = traverser.firstPage(); !page.IsEmpty(); page = traverser.nextPage(page)) {
        pages.push_back(page);
        keys.push_back(KeyOf(plan, page));
        EXPECT_EQ(traverser.pageOrder(page), pages.size());
        const std::set<Key> from = naive.From(keys.back());
        std::vector<unsigned> below;
        for (unsigned number = 1; number <= want.size(); ++number)
            if (from.count(want[number - 1]) != 0) below.push_back(number);
        EXPECT_EQ(traverser.numbersForPage(page), below);
    }
    EXPECT_EQ(keys, want);
    return pages;
}

TEST(PageTraverser, AgreesWithANaiveWalkOnRandomHierarchies) {
    for (unsigned seed = 0; seed < 400 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Plan plan(seed);
        const bool byLevel = plan.Roll(2) != 0, custom = plan.Roll(2) != 0;
        PageTraverser pages = plan.Traverser();
        pages.setAlgorithm(byLevel ? EAlgorithm::LevelByLevel : EAlgorithm::DepthFirst,
                           custom ? ECompAlgorithm::Custom : ECompAlgorithm::Default);
        NaiveWalk naive(plan, byLevel, custom ? &PlannedSheet::ordered : &PlannedSheet::listed);
        EXPECT_EQ(pages.update(), plan.blocks[0].size());
        const std::vector<PageID> all = Compare(plan, pages, naive);
        for (unsigned step = 0; step < 6 && !all.empty(); ++step) {
            const PageID& page = all[plan.Roll(all.size())];
            const bool exclude = plan.Roll(2) == 0;
            exclude ? pages.excludePage(page) : pages.includePage(page);
            for (const Key& key : naive.From(KeyOf(plan, page))) {
                if (naive.pagesBelow.count(key) == 0) continue;
                naive.excluded.erase(key);
                if (exclude) naive.excluded.insert(key);
            }
            Compare(plan, pages, naive);
        }
    }
}

}  // namespace
}  // namespace Quill::Testing
