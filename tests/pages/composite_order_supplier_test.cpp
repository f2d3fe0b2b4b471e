#include "pages/composite_order_supplier.h"

#include <algorithm>
#include <array>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "pages/page_objects.h"
#include "tests/pages/page_design.h"

namespace Quill::Testing {
namespace {

// One sheet with the components W, X, Y and Z, in this order. What the random hierarchies show is left out here.
class OrderSuppliers : public testing::Test {
protected:
    OrderSuppliers() : child(design.AddBlock("child")) {
        Add({.label = "b", .name = "q"}, "REFDES", "U10");
        Add({.label = "a", .name = "p"}, "REFDES", "U2");
        Add({.label = "c", .name = "q"}, "REFDES", "");
        Add({.label = "a", .name = "P"}, "Ref Designator", "U02");
        // What is no hierarchical component: of another type, without a child block, a net.
        Orin::Index net;
        design.AddComp(design.block, design.SheetOf(0), {.label = "0", .childBlock = IndexOf(child)});
        design.AddChild(design.block, design.SheetOf(0), "0", {});
        Require(design.editor.AddNet(IndexOf(design.block), {"N"}, net));
        Require(design.editor.AddMember(design.SheetOf(0), net));
        pages.setAlgorithm(EAlgorithm::DepthFirst, ECompAlgorithm::Default);
        pages.update();
        page = pages.firstPage();
    }

    void Add(Orin::DesignDb::CompSpec spec, const char* attribute, const char* designator) {
        spec.types = Orin::ECompType::Hierarchical;
        spec.childBlock = IndexOf(child);
        comps.push_back(design.AddComp(design.block, design.SheetOf(0), spec));
        Require(design.editor.SetAttribute(comps.back(), attribute, designator));
    }

    std::string Names(const std::vector<Orin::Index>& order) const {
        std::string names;
        for (const Orin::Index& index : order)
            names += "WXYZ?"[std::find(comps.begin(), comps.end(), index) - comps.begin()];
        return names;
    }
    template <class Supplier, class... Direction>
    std::string Order(bool declines, Direction... ascending) {
        PageObjects objects(design.objects);
        Supplier supplier(objects, ascending...);
        std::vector<Orin::Index> order = {Orin::Index(1)};  // what stands there stays there, and is reversed, too
        EXPECT_EQ(supplier.supplyOrder(design.block, page, order), !declines);
        return Names(order);
    }
    std::string Field(std::size_t comp) const { return OrderField(comps[comp]); }

    PageDesign design{{{"1"}, {"2"}}};
    PageTraverser pages = design.Traverser();
    SheetRange::Block child;
    std::vector<Orin::Index> comps;
    PageID page;
};

TEST_F(OrderSuppliers, AreChosenByTheirNumber) {
    // Of two labels the later component stays. Without designator, or with that of an earlier one, it comes in front.
    const char* const orders[] = {"ZW",  "ZWY", "ZXY",  "WXYZ", "ZWY",  "YZXW", "WZ",
                                  "YWZ", "YXZ", "WXYZ", "YWZ",  "WXZY", "WXYZ"};
    Require(design.editor.SetAttribute(page.group, "$$Internal_COMPS_ORDER", (Field(3) + Field(0)).c_str()));
    for (int number = 0; number < 13; ++number) {
        pages.setAlgorithm(EAlgorithm::DepthFirst, static_cast<ECompAlgorithm>(number));
        pages.update();
        EXPECT_EQ(Names(pages.compositeOrder(page.group)), orders[number]) << number;
    }
}

TEST_F(OrderSuppliers, AddToTheOrderThatTheyAreGiven) {
    EXPECT_EQ(Order<DefaultOrderSupplier>(false), "?WXYZ");
    EXPECT_EQ(Order<NameOrderSupplier>(false, true), "?ZWY");
    EXPECT_EQ(Order<NameOrderSupplier>(false, false), "YWZ?");
    EXPECT_EQ(Order<SymbolOrderSupplier>(false, false), "YXZ?");
    EXPECT_EQ(Order<RefDefOrderSupplier>(false, false), "WXZY?");

    // At its place a component has a designator of its own.
    Require(design.editor.SetAttributeInPath(page.path, comps[0], "REFDES", "U1"));
    EXPECT_EQ(Order<RefDefOrderSupplier>(false, true), "?YZWX");

    Require(design.editor.DeleteBlock(IndexOf(child)));
    EXPECT_EQ(Order<DefaultOrderSupplier>(false), "?");
    PageObjects objects(design.objects);
    std::vector<Orin::Index> order;
    EXPECT_FALSE(RefDefOrderSupplier(objects, true).supplyOrder(design.block, page, order)) << "nothing to order";
}

TEST_F(OrderSuppliers, CompareDesignatorsByPrefixThenNumber) {
    // The designators of W and X; those of Y and Z are U8 and U9.
    const std::array<const char*, 4> cases[] = {
        {"numbers by value", "U10", "U7", "?XYZW"},
        {"prefixes by bytes", "u1", "T99", "?XYZW"},
        {"a shorter prefix is first", "UA", "U", "?XYZW"},
        {"no digits count as 0", "U1", "U", "?XWYZ"},
        {"no prefix", "7", "12", "?WXYZ"},
        {"leading zeros make no difference", "U7", "U007", "?XWYZ"},
        {"digits inside belong to the prefix", "U1A2", "U1A1", "?YZXW"},
        {"too large numbers are equal", "U99999999999", "U99999999998", "?XYZW"},
    };
    Require(design.editor.SetAttribute(comps[2], "REFDES", "U8"));
    Require(design.editor.SetAttribute(comps[3], "REFDES", "U9"));
    for (const auto& [why, w, x, want] : cases) {
        Require(design.editor.SetAttribute(comps[0], "REFDES", w));
        Require(design.editor.SetAttribute(comps[1], "REFDES", x));
        EXPECT_EQ(Order<RefDefOrderSupplier>(false, true), want) << why;
    }
}

TEST_F(OrderSuppliers, ReadStoredOrdersInFieldsOfTwentyCharacters) {
    const std::tuple<const char*, std::string, bool, const char*, const char*> cases[] = {
        {"no field at all", "", false, "?", "?"},
        {"less than a field is an empty order", Field(0).substr(1), false, "?", "?"},
        {"what follows the last field is ignored", Field(3) + Field(1) + "    5", false, "?ZX", "XZ?"},
        {"strangers are given as they are", Field(0) + Field(0) + "                   7", false, "?WW?", "?WW?"},
        {"a field ends at its first other character", Field(2).substr(1) + "x", false, "?Y", "Y?"},
        {"a negative number is a stranger", "                  -1" + Field(1), false, "??X", "X??"},
        {"the order ends at a damaged field", Field(1) + std::string(17, ' ') + "abc" + Field(2), true, "?X", "?X"},
        {"blanks are no number", Field(1) + std::string(20, ' '), true, "?X", "?X"},
        {"nor is one of more than 64 bits", "99999999999999999999", true, "?", "?"},
    };
    EXPECT_EQ(Order<CustomOrderSupplier>(true, true), "?") << "no stored order";
    for (const auto& [why, stored, declines, want, reversed] : cases) {
        Require(design.editor.SetAttribute(page.group, "$$Internal_COMPS_ORDER", stored.c_str()));
        EXPECT_EQ(Order<CustomOrderSupplier>(declines, true), want) << why;
        EXPECT_EQ(Order<CustomOrderSupplier>(declines, false), reversed) << why;
    }
}

}  // namespace
}  // namespace Quill::Testing
