#include "pages/composite_order_supplier.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "pages/page_objects.h"
#include "tests/pages/page_design.h"

namespace Quill::Testing {
namespace {

// One sheet with the components W, X, Y and Z, called so by their reference text, in this order.
class OrderSuppliers : public testing::Test {
protected:
    OrderSuppliers() : child(design.AddBlock("child")) {
        const Orin::Index sheet = SheetDesign::IndexOf(design.sheets[0]);
        Add("W", {.label = "b", .name = "q"}, "REFDES", "U10");
        Add("X", {.label = "a", .name = "p"}, "REFDES", "U2");
        Add("Y", {.label = "c", .name = "q"}, "REFDES", "");
        Add("Z", {.label = "a", .name = "P"}, "Ref Designator", "U02");
        // What is no hierarchical component: of another type, without a child block, a net.
        Orin::Index net;
        design.AddComp(design.block, sheet, {.label = "0", .childBlock = SheetDesign::IndexOf(child)});
        design.AddChild(design.block, sheet, "0", {});
        Require(design.editor.AddNet(SheetDesign::IndexOf(design.block), {"N"}, net));
        Require(design.editor.AddMember(sheet, net));
        Orin::ContainerT<const Orin::IConfig> config;
        Orin::ContainerT<const Orin::IPath> path;
        Require(design.snapshot->GetDefaultConfig(config, "top"));
        Require(config->GetRoot(path));
        page = {SheetDesign::IndexOf(path), sheet, ""};
    }

    void Add(const char* reference, Orin::DesignDb::CompSpec spec, const char* attribute, const char* designator) {
        spec.types = Orin::ECompType::Hierarchical;
        spec.childBlock = SheetDesign::IndexOf(child);
        comps.emplace_back(design.AddComp(design.block, SheetDesign::IndexOf(design.sheets[0]), spec), reference);
        Require(design.editor.SetAttribute(comps.back().first, attribute, designator));
    }

    std::string Names(const std::vector<Orin::Index>& order) const {
        std::string names;
        for (const Orin::Index& index : order) {
            std::string name = "?";
            for (const auto& [comp, reference] : comps)
                if (comp == index) name = reference;
            names += name;
        }
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

    PageDesign design{{{"1"}, {"2"}}};
    SheetRange::Block child;
    std::vector<std::pair<Orin::Index, std::string>> comps;
    PageID page;
};

TEST_F(OrderSuppliers, SortByTheirRuleInBothDirections) {
    EXPECT_EQ(Order<DefaultOrderSupplier>(false), "?WXYZ");
    EXPECT_EQ(Order<NameOrderSupplier>(false, true), "?ZWY") << "of two labels the later component stays";
    EXPECT_EQ(Order<NameOrderSupplier>(false, false), "YWZ?");
    EXPECT_EQ(Order<SymbolOrderSupplier>(false, true), "?ZXY");
    EXPECT_EQ(Order<SymbolOrderSupplier>(false, false), "YXZ?");
    EXPECT_EQ(Order<RefDefOrderSupplier>(false, true), "?YZXW") << "without designator and equal to an earlier one";
    EXPECT_EQ(Order<RefDefOrderSupplier>(false, false), "WXZY?");

    // At its place a component has a designator of its own.
    Require(design.editor.SetAttributeInPath(page.path, comps[0].first, "REFDES", "U1"));
    EXPECT_EQ(Order<RefDefOrderSupplier>(false, true), "?YZWX");

    Require(design.editor.DeleteBlock(SheetDesign::IndexOf(child)));
    EXPECT_EQ(Order<DefaultOrderSupplier>(false), "?");
    EXPECT_EQ(Order<NameOrderSupplier>(false, true), "?");
    PageObjects objects(design.objects);
    std::vector<Orin::Index> order;
    EXPECT_FALSE(RefDefOrderSupplier(objects, true).supplyOrder(design.block, page, order)) << "nothing to order";
}

TEST_F(OrderSuppliers, CompareDesignatorsByPrefixThenNumber) {
    struct Case {
        const char *why, *w, *x, *want;  // designators of W and X; Y and Z are U8 and U9
    };
    const Case cases[] = {
        {"numbers by value", "U10", "U7", "XYZW"},
        {"prefixes by bytes", "u1", "T99", "XYZW"},
        {"a shorter prefix is first", "UA", "U", "XYZW"},
        {"no digits count as 0", "U1", "U", "XWYZ"},
        {"no prefix", "7", "12", "WXYZ"},
        {"leading zeros make no difference", "U7", "U007", "XWYZ"},
        {"digits inside belong to the prefix", "U1A2", "U1A1", "YZXW"},
        {"too large numbers are equal", "U99999999999", "U99999999998", "XYZW"},
    };
    Require(design.editor.SetAttribute(comps[2].first, "REFDES", "U8"));
    Require(design.editor.SetAttribute(comps[3].first, "REFDES", "U9"));
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        Require(design.editor.SetAttribute(comps[0].first, "REFDES", c.w));
        Require(design.editor.SetAttribute(comps[1].first, "REFDES", c.x));
        EXPECT_EQ(Order<RefDefOrderSupplier>(false, true), std::string("?") + c.want);
    }
}

TEST_F(OrderSuppliers, ReadStoredOrdersInFieldsOfTwentyCharacters) {
    const auto field = [&](std::size_t comp) {
        const std::string number = std::to_string(comps[comp].first.Value());
        return std::string(20 - number.size(), ' ') + number;
    };
    struct Case {
        const char* why;
        std::string stored;
        bool declines;
        const char* want;
    };
    const Case cases[] = {
        {"no field at all", "", false, "?"},
        {"less than a field is an empty order", field(0).substr(1), false, "?"},
        {"what follows the last field is ignored", field(3) + field(1) + "    5", false, "?ZX"},
        {"repeats and strangers are given as they are", field(0) + field(0) + "                   7", false, "?WW?"},
        {"a field ends at its first other character", field(2).substr(1) + "x", false, "?Y"},
        {"a negative number is a stranger", "                  -1" + field(1), false, "??X"},
        {"the order ends at a damaged field and is declined", field(1) + std::string(17, ' ') + "abc" + field(2), true,
         "?X"},
        {"blanks are no number", field(1) + std::string(20, ' '), true, "?X"},
        {"nor is one of more than 64 bits", "99999999999999999999", true, "?"},
    };
    EXPECT_EQ(Order<CustomOrderSupplier>(true, true), "?") << "no stored order";
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        Require(design.editor.SetAttribute(page.group, "$$Internal_COMPS_ORDER", c.stored.c_str()));
        EXPECT_EQ(Order<CustomOrderSupplier>(c.declines, true), c.want);
        std::string reversed = c.want;
        if (!c.declines) std::reverse(reversed.begin(), reversed.end());
        EXPECT_EQ(Order<CustomOrderSupplier>(c.declines, false), reversed);
    }
}

TEST_F(OrderSuppliers, AreChosenByNumber) {
    const auto field = [&](std::size_t comp) {
        return std::to_string(comps[comp].first.Value()) + std::string(20, ' ');
    };
    Require(design.editor.SetAttribute(page.group, "$$Internal_COMPS_ORDER",
                                       (field(3).substr(0, 20) + field(1).substr(0, 20)).c_str()));
    const char* const want[] = {"ZX",  "ZWY", "ZXY",  "WXYZ", "ZWY",  "YZXW", "XZ",
                                "YWZ", "YXZ", "WXYZ", "YWZ",  "WXZY", "WXYZ"};
    PageTraverser pages = design.Traverser();
    for (int algorithm = 0; algorithm <= 12; ++algorithm) {
        SCOPED_TRACE(algorithm);
        pages.setAlgorithm(EAlgorithm::DepthFirst, static_cast<ECompAlgorithm>(algorithm));
        pages.update();
        EXPECT_EQ(Names(pages.compositeOrder(page.group)), want[algorithm]);
    }
    Require(design.editor.SetAttribute(page.group, "$$Internal_COMPS_ORDER",
                                       (field(3).substr(0, 20) + std::string(20, 'x')).c_str()));
    pages.setAlgorithm(EAlgorithm::DepthFirst, ECompAlgorithm::Custom);
    pages.update();
    EXPECT_EQ(Names(pages.compositeOrder(page.group)), "ZWXYZ") << "declined: the default order behind what was read";
}

}  // namespace
}  // namespace Quill::Testing
