#include "pages/page_traverser.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "designdb/testing/fault_injector.h"
#include "tests/pages/page_design.h"

namespace Quill::Testing {
namespace {

using Orin::DesignDb::Testing::FaultInjector;
using Numbers = std::vector<unsigned>;

// top: sheets 1 and 2; on 1 the children $a and $b, on 2 the child $c. $a and $c are the same block "leaf" with sheets
// x and y; $b is a block without sheets.
class Pages : public testing::Test {
protected:
    Pages() : leaf(design.AddBlock("leaf")), bare(design.AddBlock("bare")) {
        x = IndexOf(design.AddSheet(leaf, {"x"}));
        design.AddSheet(leaf, {"y"});
        design.AddChild(design.block, design.SheetOf(0), "$a", leaf);
        design.AddChild(design.block, design.SheetOf(0), "$b", bare);
        design.AddChild(design.block, design.SheetOf(1), "$c", leaf);
    }

    void Update(EAlgorithm algorithm = EAlgorithm::DepthFirst) {
        pages.setAlgorithm(algorithm, ECompAlgorithm::Default);
        pages.update();
    }
    PageID Named(const char* name) { return pages.getPageByName(name); }

    PageDesign design{std::vector<SheetSpec>{{"1"}, {"2"}}};
    SheetRange::Block leaf, bare;
    Orin::Index x;
    PageTraverser pages = design.Traverser();
};

// That pages come depth first or level by level is shown by the random hierarchies.
TEST_F(Pages, TellTheirNumbersByPageAndBlock) {
    pages.setAlgorithm(EAlgorithm::LevelByLevel, ECompAlgorithm::Default);
    EXPECT_EQ(NamesOf(pages), "");
    EXPECT_EQ(pages.update(), 2U) << "the root's sheets only";
    EXPECT_EQ(NamesOf(pages), "1;2;$a\\x;$a\\y;$c\\x;$c\\y;");
    EXPECT_EQ(pages.pageNumber(Named("$c\\x")), "5");
    EXPECT_EQ(pages.pageNumber({}), "");
    const Orin::Index path = Named("$c\\x").path, block = IndexOf(leaf);
    EXPECT_EQ(pages.numbersForPage({}), (Numbers{1, 2, 3, 4, 5, 6})) << "the empty page is above all";
    EXPECT_EQ(pages.numbersForBlock(block, path), (Numbers{5, 6}));
    EXPECT_EQ(pages.rangeForBlock(IndexOf(design.block), Named("1").path), (Numbers{1, 6}));
    EXPECT_EQ(pages.rangeForBlock(block, Named("1").path), Numbers{}) << "the block does not stand there";
    EXPECT_EQ(pages.rangeForPage(Named("1")), Numbers{}) << "never a range for a page";

    for (const int other : {0, 4, -1}) {
        pages.setAlgorithm(static_cast<EAlgorithm>(other), ECompAlgorithm::Default);
        EXPECT_EQ(pages.update(), 2U);
        EXPECT_EQ(NamesOf(pages), "");
        EXPECT_FALSE(pages.containsPage({x, x, ""}));
    }
    std::string error = "untouched";
    EXPECT_FALSE(pages.setCustomFile("order.txt", error));
    EXPECT_EQ(error, "untouched");
}

TEST_F(Pages, WithoutAnAlgorithmAreNone) {
    pages.excludePage({});
    pages.removePage({});
    pages.attachPage({});
    EXPECT_EQ(pages.update(), 0U);
    EXPECT_TRUE(pages.firstPage().IsEmpty() && pages.nextPage({}).IsEmpty() && pages.getPage(0).IsEmpty());
    EXPECT_TRUE(Named("1").IsEmpty());
    EXPECT_EQ(pages.pagesCount(), 0U);
    EXPECT_EQ(pages.pageNumber({}), "");
    EXPECT_FALSE(pages.containsPage({}));
    EXPECT_TRUE(pages.compositeOrder(design.SheetOf(0)).empty() && pages.numbersForPage({}).empty());
}

// That everything below is excluded with them and comes back is shown by the random hierarchies.
TEST_F(Pages, AreMarkedExcludedOneByOne) {
    Require(design.editor.SetAttribute(design.SheetOf(0), "ExcludeFromPrintout", "True"));
    const Orin::Index third = IndexOf(design.AddSheet(design.block, {"3"}));
    design.AddChild(design.block, third, "$d", bare);
    Update();
    EXPECT_TRUE(pages.isMarkedExcluded(Named("1")));
    EXPECT_FALSE(pages.isMarkedExcluded(Named("$a\\x"))) << "excluded with its parent, not marked";
    EXPECT_EQ(pages.pageNumber(Named("$a\\x")), "");
    pages.includePage(Named("1"));
    EXPECT_FALSE(pages.isMarkedExcluded(Named("1")));
    pages.excludePage(Named("3"));
    EXPECT_TRUE(pages.isMarkedExcluded(Named("3"))) << "though nothing is recorded below it";
    pages.excludePage({});
    EXPECT_EQ(NamesOf(pages), "3;") << "not excluded from above either";
    EXPECT_EQ(pages.heldPages().size(), 7U) << "every page, excluded or not";
    pages.update();
    EXPECT_FALSE(pages.isMarkedExcluded(Named("3")));
}

TEST_F(Pages, AreRemovedWithAllBelowAndAttachedOneByOne) {
    Update();
    const PageID top = Named("1"), ax = Named("$a\\x"), ay = Named("$a\\y"), cx = Named("$c\\x");
    const Orin::Index block = IndexOf(leaf);
    pages.removePage(top);
    EXPECT_EQ(NamesOf(pages), "2;$c\\x;$c\\y;");
    EXPECT_EQ(pages.pageNumber(Named("2")), "4") << "numbered as before";
    EXPECT_FALSE(pages.containsPage(ax) || pages.containsPage(top));
    EXPECT_EQ(pages.numbersForBlock(block, ax.path), Numbers{});
    EXPECT_EQ(pages.numbersForPage(top), Numbers{});
    pages.includePage(ax);
    EXPECT_EQ(pages.pageNumber(Named("2")), "1") << "the next renumbering closes the gap";

    pages.attachPage(top);
    pages.attachPage(ay);
    EXPECT_FALSE(pages.containsPage(ay)) << "held again with the next update";
    EXPECT_EQ(pages.numbersForPage(top), Numbers{});

    // A page that is attached is excluded and numbered with those above it again.
    pages.removePage(cx);
    EXPECT_EQ(pages.numbersForPage(Named("2")), (Numbers{1, 3}));
    pages.attachPage(cx);
    pages.attachPage(cx);
    pages.removePage(Named("2"));
    EXPECT_EQ(NamesOf(pages), "");

    Update();
    Orin::Index fresh;
    Require(design.editor.AddGroup(block, {"z"}, fresh));
    for (const Orin::Index& group : {fresh, design.SheetOf(0), Orin::Index()})
        pages.attachPage({cx.path, group, "new"});  // the last two are no sheets of the leaf
    pages.attachPage({Orin::Index(), fresh, "nowhere"});
    EXPECT_EQ(pages.numbersForBlock(block, cx.path), (Numbers{5, 6}));
    pages.update();
    EXPECT_EQ(NamesOf(pages), "1;$a\\x;$a\\y;$a\\z;2;$c\\x;$c\\y;$c\\z;");
}

TEST_F(Pages, TakeTheirPrintOrderFromTheFirstTitleThatBearsOne) {
    constexpr const char* PrintOrder = "$$NotCommonProperty_@PRINTORDER";
    const struct {
        Orin::Index sheet;
        unsigned types;
        const char *name, *value;
    } titles[] = {
        {design.SheetOf(0), 0x10, PrintOrder, "1"},       // no title
        {design.SheetOf(0), 0x8000, PrintOrder, "1"},     // no border
        {design.SheetOf(0), 0x8010, "@PRINTORDER", "1"},  // of another kind
        {design.SheetOf(0), 0x8010, PrintOrder, "7"},
        {design.SheetOf(0), 0x8010, PrintOrder, "1"},  // not the first
        {x, 0x8010, PrintOrder, "4"},
    };
    Orin::Index comp;
    for (const auto& title : titles) {
        comp = design.AddComp(title.sheet == x ? leaf : design.block, title.sheet,
                              {.label = "title", .types = Orin::CompTypes::FromBits(title.types)});
        Require(design.editor.SetAttribute(comp, title.name, title.value));
    }
    Update(EAlgorithm::PrintOrder);
    EXPECT_EQ(NamesOf(pages), "$a\\x;1;") << "the second x has the print order of the first";
    EXPECT_TRUE(pages.containsPage(Named("$c\\x")));
    Require(design.editor.SetAttributeInPath(Named("$c\\x").path, comp, PrintOrder, "12-3"));
    Require(design.editor.SetAttribute(design.SheetOf(0), "ExcludeFromPrintout", "TRUE"));
    Update(EAlgorithm::PrintOrder);
    EXPECT_EQ(NamesOf(pages), "$a\\x;1;$c\\x;") << "who gives a print order wants the page printed";
    EXPECT_EQ(pages.pageNumber(Named("$c\\x")), "3");
    EXPECT_EQ(pages.pageNumber(Named("2")), "");
}

TEST_F(Pages, FailOnlyWhereTheWalkCannotGoOn) {
    EXPECT_THROW(PageTraverser(*design.client, "other", EViewMode::Logical), Orin::Result);
    EXPECT_THROW(PageTraverser(Orin::ContainerT<const Orin::ISnapshot>(), "top", EViewMode::Logical), Orin::Result);

    Require(design.editor.SetAttribute(design.SheetOf(1), "$$Internal_CUSTOM_ORDER", "1"));
    Update();
    EXPECT_EQ(NamesOf(pages), "2;$c\\x;$c\\y;1;$a\\x;$a\\y;");
    FaultInjector faults;
    const char* const cases[][2] = {
        {"IBlock::GetParentSnapshot", "1;$a\\x;$a\\y;2;$c\\x;$c\\y;"},  // no sheet range: as the block lists them
        {"IBlock::GetComp", "2;1;"},
        {"IComp::GetLabel", "2;x;y;1;x;y;"},
        {"IPath::GetParentComp", "2;x;y;1;x;y;"},
    };
    for (const auto& [operation, want] : cases) {
        faults.Inject({.operation = operation, .persistent = true});
        EXPECT_EQ(pages.update(), 2U) << operation;
        EXPECT_EQ(NamesOf(pages), want) << operation;
        faults.Clear();
    }
}

TEST(DeepHierarchy, OfManyLevelsThatNameTheirChildTwiceIsWalkedOnce) {
    constexpr unsigned Levels = 10'000;
    PageDesign design(std::vector<SheetSpec>{{"1"}});
    SheetRange::Block block = design.block;
    const Orin::Index top = IndexOf(design.sheets[0]);
    Orin::Index sheet = top;
    for (unsigned level = 1; level < Levels; ++level) {
        const SheetRange::Block below = design.AddBlock("level");
        const std::string field = OrderField(design.AddChild(block, sheet, "$", below));
        Require(design.editor.SetAttribute(sheet, "$$Internal_COMPS_ORDER", (field + field).c_str()));
        block = below;
        sheet = IndexOf(design.AddSheet(below, {"1"}));
    }
    design.AddChild(block, sheet, "$", design.block);  // a hierarchy that contains itself ends there
    PageTraverser pages = design.Traverser();
    pages.setAlgorithm(EAlgorithm::DepthFirst, ECompAlgorithm::Custom);
    EXPECT_EQ(pages.update(), 1U);
    EXPECT_EQ(pages.pagesCount(), Levels);
    EXPECT_EQ(pages.compositeOrder(top).size(), 2U) << "the repeat is told all the same";
    EXPECT_EQ(pages.getPage(Levels - 1).name.size(), 2 * (Levels - 1) + 1U);
    EXPECT_EQ(pages.numbersForPage(pages.getPage(1)).size(), Levels - 1U);
    pages.excludePage(pages.getPage(5));
    EXPECT_EQ(pages.pagesCount(), 5U);
    pages.removePage(pages.getPage(1));
    EXPECT_EQ(pages.pagesCount(), 1U);
}

}  // namespace
}  // namespace Quill::Testing
