#include "pages/page_holder.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "pages/page_number_supplier.h"

namespace Quill {
namespace {

using Orin::Index;

PageID Page(std::uint64_t number, const std::string& name = "") {
    return {Index(1), Index(number), name};
}

// The sheets of the pages in the order of iteration, by next and by position alike.
std::vector<std::uint64_t> Iterated(const PageHolder& holder) {
    std::vector<std::uint64_t> groups;
    for (PageID page = holder.firstPage(); !page.IsEmpty(); page = holder.nextPage(page)) {
        EXPECT_EQ(holder.getPage(static_cast<unsigned>(groups.size())), page);
        groups.push_back(page.group.Value());
    }
    EXPECT_TRUE(holder.getPage(static_cast<unsigned>(groups.size())).IsEmpty());
    EXPECT_EQ(holder.pagesCount(), groups.size());
    return groups;
}

std::vector<std::uint64_t> Held(const PageHolder& holder) {
    std::vector<std::uint64_t> groups;
    for (const PageID& page : holder.heldPages())
        groups.push_back(page.group.Value());
    return groups;
}

std::vector<unsigned> Orders(const PageHolder& holder, std::uint64_t upTo) {
    std::vector<unsigned> orders;
    for (std::uint64_t i = 1; i <= upTo; ++i)
        orders.push_back(holder.pageOrder(Page(i)));
    return orders;
}

constexpr unsigned None = 0xFFFFFFFF;
using Numbers = std::vector<unsigned>;
using Groups = std::vector<std::uint64_t>;

TEST(SequencedPageHolder, NumbersWhatIsIncludedAndKeepsTheWalkPlacesOfTheRest) {
    SequencedPageHolder holder;
    OrdinalNumberSupplier numbers(1);
    holder.addPage(Page(1, "X"), &numbers, false);
    holder.addPage(Page(2, "Y"), &numbers, true);
    holder.addPage(Page(1, "X"), &numbers, false);  // held already: no second entry, but a number is drawn
    holder.addPage(Page(3, "Z"), &numbers, false);
    EXPECT_EQ(numbers.next, 5U);
    EXPECT_EQ(Orders(holder, 4), (Numbers{1, None, 4, None}));
    EXPECT_EQ(Iterated(holder), (Groups{1, 3}));

    holder.renumber();
    EXPECT_EQ(Orders(holder, 3), (Numbers{1, None, 2}));
    EXPECT_TRUE(holder.containsPage(Page(2))) << "held apart, but held";
    EXPECT_TRUE(holder.nextPage(Page(2)).IsEmpty());
    EXPECT_EQ(holder.getPageByName("Y").group, Index(2));

    holder.includePage(Page(2));
    EXPECT_EQ(Orders(holder, 3), (Numbers{1, None, 2})) << "no number before the next renumber";
    holder.renumber();
    EXPECT_EQ(Iterated(holder), (Groups{1, 2, 3})) << "back at its place in the walk";

    holder.excludePage(Page(1));
    holder.removePage(Page(3));
    holder.excludePage(Page(9));
    EXPECT_EQ(Iterated(holder), (Groups{2}));
    EXPECT_FALSE(holder.containsPage(Page(3)));
    EXPECT_TRUE(holder.getPageByName("Z").IsEmpty());
    EXPECT_EQ(holder.getPageByName("X").name, "X");

    holder.addPage(Page(3, "Y"), &numbers, false);
    EXPECT_EQ(holder.getPageByName("Y").group, Index(2)) << "of two pages of one name the first";
    holder.removePage(Page(2));
    EXPECT_EQ(holder.getPageByName("Y").group, Index(3));
    holder.addPage(Page(4), nullptr, false);
    EXPECT_EQ(Orders(holder, 4), (Numbers{None, None, 5, None})) << "no counter, no number";
    EXPECT_EQ(Held(holder), (Groups{1, 3, 4})) << "the excluded one too";

    holder.clear();
    EXPECT_EQ(Iterated(holder), Groups{});
    EXPECT_FALSE(holder.containsPage(Page(1)));
    numbers.reset();
    EXPECT_EQ(numbers.next, 1U);
}

TEST(PrintOrder, ComparesPiecesAsNumbersOrBytes) {
    const struct {
        const char *why, *a, *b;
        bool before, after;
    } cases[] = {
        {"an empty text is before everything", "", "1", true, false},
        {"itself included", "", "", true, true},
        {"numbers by value", "2", "10", true, false},
        {"piece by piece", "1.2", "1.10", true, false},
        {"all four separators are alike", "1.2-3", "1 2/3", false, false},
        {"empty pieces are dropped", "-1..2", "1.2", false, false},
        {"leading zeros do not count", "05", "5", false, false},
        {"zero is a number", "0", "1", true, false},
        {"other spellings of zero are text", "00", "0a", true, false},
        {"a number may trail text", "3b", "10a", true, false},
        {"and the text plays no part", "3b", "3a", false, false},
        {"a number against a text by bytes", "10", "a", true, false},
        {"capitals before small letters", "B", "a", true, false},
        {"the shorter of equal beginnings", "1.2", "1.2.1", true, false},
        {"separators alone are an empty list", "--", "1", true, false},
        {"numbers too large are equal", "99999999999999999999", "99999999999999999998", false, false},
        {"in a circle: 3, 05", "3", "05", true, false},
        {"in a circle: 05, 0a", "05", "0a", true, false},
        {"in a circle: 0a, 3", "0a", "3", true, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(RandomPageHolder::IsBefore(c.a, c.b), c.before) << c.why;
        EXPECT_EQ(RandomPageHolder::IsBefore(c.b, c.a), c.after) << c.why;
    }
}

TEST(RandomPageHolder, SortsByDistinctPrintOrdersAndIgnoresExclusion) {
    RandomPageHolder holder;
    StringBaseNumberSupplier orders;
    std::uint64_t number = 0;
    for (const char* const printOrder : {"10", "1.2", "", "2", "1.2", "02"}) {
        orders.base = printOrder;
        ++number;
        holder.addPage(Page(number, printOrder), &orders, number == 2);
    }
    orders.base = "0";
    holder.addPage(Page(3), &orders, false);  // held already: it gets no print order any more
    holder.addPage(Page(7, "none"), nullptr, false);
    EXPECT_EQ(Iterated(holder), (Groups{2, 4, 6, 1})) << "equal ones in the order of adding";
    EXPECT_EQ(Orders(holder, 8), (Numbers{4, 1, None, 2, None, 3, None, None}));
    EXPECT_TRUE(holder.containsPage(Page(5))) << "a print order that is taken";
    EXPECT_TRUE(holder.nextPage(Page(5)).IsEmpty());
    EXPECT_EQ(holder.getPageByName("none").group, Index(7));

    holder.excludePage(Page(2));
    holder.removePage(Page(4));
    holder.renumber();
    orders.reset();
    EXPECT_EQ(orders.base, "0") << "a reset keeps the print order";
    holder.addPage(Page(8), &orders, false);
    EXPECT_EQ(Iterated(holder), (Groups{8, 2, 4, 6, 1}));
    EXPECT_EQ(Held(holder), (Groups{1, 2, 3, 4, 5, 6, 7, 8}));
    holder.clear();
    EXPECT_EQ(Iterated(holder), Groups{});
}

TEST(RandomPageHolder, HoldsEveryPageOnceThoughTheComparisonGoesInCircles) {
    RandomPageHolder holder;
    StringBaseNumberSupplier orders;
    const std::string circle[] = {"3", "05", "0a"};
    for (std::uint64_t i = 0; i < 300; ++i) {
        orders.base = circle[i % 3] + '.' + std::to_string(i);
        holder.addPage(Page(i + 1), &orders, false);
    }
    Groups groups = Iterated(holder);
    std::sort(groups.begin(), groups.end());
    for (std::size_t i = 0; i < 300; ++i)
        ASSERT_EQ(groups.at(i), i + 1);
}

}  // namespace
}  // namespace Quill
