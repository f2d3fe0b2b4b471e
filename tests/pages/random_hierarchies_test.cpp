// The page walk beside a second one, written down as naively as possible over the plan from which the design was built.

#include <algorithm>
#include <map>
#include <optional>
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

// In the order of the comparison.
constexpr const char* PrintOrders[] = {"0", "1", "1.2", "1.10", "2", "10", "a"};

struct PlannedComp {
    Index index = {};
    std::string label, name, designator = {};
    bool hierarchical = false;
    int child = -1;
};

struct PlannedSheet {
    Index index;
    bool excluded = false;
    int printOrder = -1;
    std::vector<std::size_t> comps = {};                    // of the block, in object order
    std::optional<std::vector<std::uint64_t>> stored = {};  // a custom order; 0 is a damaged field
};

struct PlannedBlock {
    std::vector<PlannedSheet> sheets;  // in sheet order
    std::vector<PlannedComp> comps;
};

class Plan {
public:
    explicit Plan(unsigned seed) : m_random(seed) {
        std::vector<SheetRange::Block> handles = {design.block};
        blocks.resize(1 + Roll(8));
        while (handles.size() < blocks.size())
            handles.push_back(design.AddBlock("block"));
        for (std::size_t b = 0; b < blocks.size(); ++b) {
            if (Roll(2) == 0)
                Require(design.editor.SetBlockTypes(
                    SheetDesign::IndexOf(handles[b]),
                    Orin::BlockTypes(Orin::EBlockType::Schematic) | Orin::EBlockType::Drawn));
            AddSheets(handles[b], blocks[b]);
            AddComps(handles, b);
            for (PlannedSheet& sheet : blocks[b].sheets)
                StoreOrder(blocks[b], sheet);
        }
    }

    unsigned Roll(unsigned sides) { return static_cast<unsigned>(m_random() % sides); }

    PageDesign design;
    std::vector<PlannedBlock> blocks;

private:
    void AddSheets(const SheetRange::Block& block, PlannedBlock& plan) {
        static constexpr const char* Flags[] = {"TRUE", "true", "yes", ""};
        const unsigned count = Roll(10) == 0 ? 0 : 1 + Roll(3);
        for (unsigned place = 0; place < count; ++place) {
            // Every second block lists its sheets in an order of its own.
            const bool backwards = count > 1 && (block.Get() != design.block.Get());
            const std::string order = backwards ? std::to_string(count - place) : "";
            const auto handle = design.AddSheet(block, {"s" + std::to_string(place), order, std::to_string(place)});
            PlannedSheet sheet{.index = SheetDesign::IndexOf(handle)};
            if (const unsigned flag = Roll(40); flag < 4) {
                Require(design.editor.SetAttribute(sheet.index, "ExcludeFromPrintout", Flags[flag]));
                sheet.excluded = flag < 2;
            }
            if (Roll(2) == 0) {
                sheet.printOrder = static_cast<int>(Roll(7));
                const auto title = Orin::CompTypes(Orin::ECompType::Border) | Orin::ECompType::Titled;
                const Index comp = design.AddComp(block, sheet.index, {.label = "title", .types = title});
                Require(
                    design.editor.SetAttribute(comp, "$$NotCommonProperty_@PRINTORDER", PrintOrders[sheet.printOrder]));
            }
            plan.sheets.insert(backwards ? plan.sheets.begin() : plan.sheets.end(), sheet);
        }
    }

    void AddComps(const std::vector<SheetRange::Block>& handles, std::size_t b) {
        static constexpr const char* Names[] = {"a", "$b", "c2", "c10", "C"};
        PlannedBlock& plan = blocks[b];
        for (unsigned i = 2 + Roll(4); i > 0; --i) {
            PlannedComp comp{.label = Names[Roll(5)], .name = Names[Roll(5)], .hierarchical = Roll(8) != 0};
            if (Roll(8) != 0) comp.child = static_cast<int>(Roll(static_cast<unsigned>(blocks.size())));
            if (Roll(3) != 0) comp.designator = Names[Roll(5)];
            const auto child = static_cast<std::size_t>(comp.child);
            comp.index =
                design.AddComp(handles[b], {},
                               {.label = comp.label.c_str(),
                                .name = comp.name.c_str(),
                                .types = comp.hierarchical ? Orin::ECompType::Hierarchical : Orin::ECompType::Part,
                                .childBlock = comp.child >= 0 ? SheetDesign::IndexOf(handles[child]) : Index()});
            if (!comp.designator.empty())
                Require(design.editor.SetAttribute(comp.index, Roll(2) != 0 ? "REFDES" : "Ref Designator",
                                                   comp.designator.c_str()));
            plan.comps.push_back(comp);
            for (PlannedSheet& sheet : plan.sheets) {
                if (Roll(2) != 0) continue;  // on no sheet, on one, or on several
                Require(design.editor.AddMember(sheet.index, comp.index));
                sheet.comps.push_back(plan.comps.size() - 1);
                Orin::CompDataQuill data;
                data.objectId = Roll(100);
                if (Roll(2) == 0) Require(design.editor.SetCompData(sheet.index, comp.index, data));
            }
        }
    }

    void StoreOrder(const PlannedBlock& block, PlannedSheet& sheet) {
        if (Roll(2) == 0) return;
        sheet.stored.emplace();
        std::string text;
        for (unsigned i = Roll(5); i > 0; --i) {
            const bool known = !block.comps.empty() && Roll(5) != 0;
            const std::uint64_t value =
                known ? block.comps[Roll(static_cast<unsigned>(block.comps.size()))].index.Value() : Roll(3);
            sheet.stored->push_back(value);
            const std::string field = value != 0 ? std::to_string(value) : "damaged";
            text += std::string(20 - field.size(), ' ') + field;
        }
        Require(design.editor.SetAttribute(sheet.index, "$$Internal_COMPS_ORDER", text.c_str()));
    }

    std::mt19937 m_random;
};

class NaiveWalk {
public:
    NaiveWalk(const Plan& plan, int algorithm, int childOrder)
        : m_plan(plan), m_algorithm(algorithm), m_childOrder(childOrder) {
        Visit(0, {}, {0}, {}, false);
        std::stable_sort(m_pages.begin(), m_pages.end(), [&](const Page& a, const Page& b) {
            return algorithm == 2 && a.key.first.size() < b.key.first.size();
        });
        if (algorithm == 3) SortByPrintOrder();
        for (const Page& page : m_pages)
            if (page.excluded) excluded.insert(page.key);
    }

    std::vector<Key> Sequence() const {
        std::vector<Key> sequence;
        for (const Page& page : m_pages)
            if (m_algorithm == 3 || excluded.count(page.key) == 0) sequence.push_back(page.key);
        return sequence;
    }

    std::set<Key> From(const Key& page) const {
        std::set<Key> found;
        if (children.count(page) != 0) Collect(page, found);
        return found;
    }

    std::map<Key, std::vector<Key>> children;
    std::map<Index, std::vector<Index>> orders;
    std::set<Key> excluded;

private:
    struct Page {
        Key key;
        bool excluded;
        int printOrder;
    };

    void Collect(const Key& page, std::set<Key>& found) const {
        const auto below = children.find(page);
        if (!found.insert(page).second || below == children.end()) return;
        for (const Key& key : below->second)
            Collect(key, found);
    }

    void Visit(int block, const Way& way, std::set<int> above, const Key& parent, bool isExcluded) {
        const PlannedBlock& plan = m_plan.blocks[static_cast<std::size_t>(block)];
        for (const PlannedSheet& sheet : plan.sheets) {
            const Key key(way, sheet.index);
            children[parent].push_back(key);
            const bool pageExcluded = isExcluded || sheet.excluded;
            if (std::none_of(m_pages.begin(), m_pages.end(), [&](const Page& page) { return page.key == key; }))
                m_pages.push_back({key, pageExcluded, sheet.printOrder});
            bool walked = false;
            for (const Index& index : orders[sheet.index] = OrderOf(plan, sheet)) {
                for (const PlannedComp& comp : plan.comps) {
                    if (comp.index != index || comp.child < 0 || above.count(comp.child) != 0) continue;
                    Way below = way;
                    below.push_back(index);
                    std::set<int> blocks = above;
                    blocks.insert(comp.child);
                    Visit(comp.child, below, blocks, key, pageExcluded);
                    walked = true;
                }
            }
            if (!walked) children[key].push_back(key);
        }
    }

    std::vector<Index> OrderOf(const PlannedBlock& block, const PlannedSheet& sheet) const {
        std::vector<Index> order;
        std::map<std::string, Index> sorted;
        const int rule = m_childOrder < 12 ? m_childOrder % 6 : 3;  // of 4 and 10 the same as of 1 and 7
        const bool reverses = m_childOrder >= 6 && rule != 3;
        if (rule == 0 && sheet.stored) {
            const auto damaged = std::find(sheet.stored->begin(), sheet.stored->end(), 0U);
            for (auto value = sheet.stored->begin(); value != damaged; ++value)
                order.push_back(Index(*value));
            if (damaged == sheet.stored->end() && reverses) std::reverse(order.begin(), order.end());
            if (damaged == sheet.stored->end()) return order;
        }
        for (const std::size_t place : sheet.comps) {
            const PlannedComp& comp = block.comps[place];
            if (!comp.hierarchical || comp.child < 0) continue;
            if (rule == 1 || rule == 4)
                sorted[comp.label] = comp.index;
            else if (rule == 2)
                sorted[comp.name] = comp.index;
            else if (rule != 5 || comp.designator.empty() ||
                     !sorted.emplace(comp.designator == "c10" ? "c9" : comp.designator, comp.index).second)
                order.push_back(comp.index);
        }
        for (const auto& [key, index] : sorted)
            order.push_back(index);
        if (reverses && rule != 0) std::reverse(order.begin(), order.end());
        return order;
    }

    void SortByPrintOrder() {
        std::vector<Page> sorted;
        for (int order = 0; order < 7; ++order) {
            const auto first = std::find_if(m_pages.begin(), m_pages.end(),
                                            [&](const Page& page) { return page.printOrder == order; });
            if (first != m_pages.end()) sorted.push_back(*first);
        }
        m_pages = sorted;
    }

    const Plan& m_plan;
    const int m_algorithm;
    const int m_childOrder;
    std::vector<Page> m_pages;  // those that are numbered
};

std::vector<PageID> PagesOf(const PageTraverser& pages) {
    std::vector<PageID> sequence;
    for (PageID page = pages.firstPage(); !page.IsEmpty(); page = pages.nextPage(page))
        sequence.push_back(page);
    return sequence;
}

// Finds the page in the design, where its name comes from, too.
Key KeyOf(const Plan& plan, const PageID& page) {
    Orin::ContainerT<const Orin::IPath> path;
    Orin::ContainerT<const Orin::IGroup> sheet;
    Orin::ListT<Index> way;
    Orin::String sheetName;
    Require(plan.design.objects.GetPath(path, page.path));
    Require(path->GetListHierarchyIndexes(way));
    Require(plan.design.objects.GetGroup(sheet, page.group));
    Require(sheet->GetName(sheetName));
    const std::string place = Utils::QuillInOrin::GetHierarchicalName(path);
    EXPECT_EQ(page.name, (place.empty() ? place : place + '\\') + static_cast<const char*>(sheetName));
    return {Way(way.begin(), way.end()), page.group};
}

void Compare(const Plan& plan, const PageTraverser& traverser, const NaiveWalk& naive) {
    const std::vector<Key> want = naive.Sequence();
    const std::vector<PageID> pages = PagesOf(traverser);
    ASSERT_EQ(pages.size(), want.size());
    for (std::size_t i = 0; i < want.size(); ++i) {
        ASSERT_EQ(KeyOf(plan, pages[i]), want[i]) << i;
        EXPECT_EQ(traverser.pageOrder(pages[i]), i + 1);
        const std::set<Key> from = naive.From(want[i]);
        std::vector<unsigned> below;
        for (unsigned number = 1; number <= want.size(); ++number)
            if (from.count(want[number - 1]) != 0) below.push_back(number);
        EXPECT_EQ(traverser.numbersForPage(pages[i]), below) << i;
    }
    for (const auto& [group, order] : naive.orders)
        EXPECT_EQ(traverser.compositeOrder(group), order);
}

TEST(PageTraverser, AgreesWithANaiveWalkOnRandomHierarchies) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        Plan plan(seed);
        PageTraverser pages = plan.design.Traverser();
        for (int algorithm = 1; algorithm <= 3; ++algorithm) {
            const int childOrder = static_cast<int>(plan.Roll(13));
            SCOPED_TRACE(std::to_string(seed) + " " + std::to_string(algorithm) + " " + std::to_string(childOrder));
            pages.setAlgorithm(static_cast<EAlgorithm>(algorithm), static_cast<ECompAlgorithm>(childOrder));
            NaiveWalk naive(plan, algorithm, childOrder);
            EXPECT_EQ(pages.update(), plan.blocks[0].sheets.size());
            ASSERT_NO_FATAL_FAILURE(Compare(plan, pages, naive));

            const std::vector<PageID> all = PagesOf(pages);
            for (unsigned step = 0; step < 6 && !all.empty(); ++step) {
                const PageID page = all[plan.Roll(static_cast<unsigned>(all.size()))];
                const bool exclude = plan.Roll(2) == 0;
                exclude ? pages.excludePage(page) : pages.includePage(page);
                for (const Key& key : naive.From(KeyOf(plan, page))) {
                    if (naive.children.count(key) == 0) continue;
                    naive.excluded.erase(key);
                    if (exclude) naive.excluded.insert(key);
                }
                ASSERT_NO_FATAL_FAILURE(Compare(plan, pages, naive)) << step;
            }
        }
    }
}

}  // namespace
}  // namespace Quill::Testing
