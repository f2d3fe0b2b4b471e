#include "pages/page_holder.h"

#include <set>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "pages/page_number_supplier.h"

namespace Quill {
namespace {

using Orin::Index;

PageID Page(std::uint64_t number, const std::string& name = "") {
    return {Index(1), Index(number), name};
}

// The pages in the order of iteration, by next and by position alike, then those that are held, with their numbers:
// "1 3 of 1=1 2=- 3=2 ".
std::string State(const PageHolder& holder) {
    const auto sheet = [](const PageID& page) { return std::to_string(page.group.Value()); };
    std::string state;
    unsigned position = 0;
    for (PageID page = holder.firstPage(); !page.IsEmpty(); page = holder.nextPage(page)) {
        EXPECT_EQ(holder.getPage(position++), page);
        state += sheet(page) + ' ';
    }
    EXPECT_TRUE(holder.getPage(position).IsEmpty());
    EXPECT_EQ(holder.pagesCount(), position);
    state += "of ";
    for (const PageID& page : holder.heldPages()) {
        const unsigned number = holder.pageOrder(page);
        state += sheet(page) + '=' + (number == NoPageNumber ? "-" : std::to_string(number)) + ' ';
    }
    return state;
}

TEST(SequencedPageHolder, NumbersWhatIsIncludedAndKeepsTheWalkPlacesOfTheRest) {
    SequencedPageHolder holder;
    OrdinalNumberSupplier numbers(1);
    holder.addPage(Page(1, "X"), &numbers, false);
    holder.addPage(Page(2, "Y"), &numbers, true);
    holder.addPage(Page(1, "X"), &numbers, false);  // held already: no second entry, but a number is drawn
    holder.addPage(Page(3, "Z"), &numbers, false);
    EXPECT_EQ(numbers.next, 5U);
    EXPECT_EQ(State(holder), "1 3 of 1=1 2=- 3=4 ");
    EXPECT_EQ(holder.pageOrder(Page(4)), NoPageNumber);

    holder.renumber();
    EXPECT_EQ(State(holder), "1 3 of 1=1 2=- 3=2 ");
    EXPECT_TRUE(holder.containsPage(Page(2))) << "held apart, but held";
    EXPECT_TRUE(holder.nextPage(Page(2)).IsEmpty());
    EXPECT_EQ(holder.getPageByName("Y").group, Index(2));

    holder.includePage(Page(2));
    EXPECT_EQ(State(holder), "1 2 3 of 1=1 2=- 3=2 ") << "back at its place, without a number before the next renumber";
    holder.renumber();
    EXPECT_EQ(State(holder), "1 2 3 of 1=1 2=2 3=3 ");

    holder.excludePage(Page(1));
    holder.removePage(Page(3));
    holder.excludePage(Page(9));
    EXPECT_EQ(State(holder), "2 of 1=- 2=2 ");
    EXPECT_FALSE(holder.containsPage(Page(3)));
    EXPECT_TRUE(holder.getPageByName("Z").IsEmpty());
    EXPECT_EQ(holder.getPageByName("X").name, "X");

    holder.addPage(Page(3, "Y"), &numbers, false);
    EXPECT_EQ(holder.getPageByName("Y").group, Index(2)) << "of two pages of one name the first";
    holder.removePage(Page(2));
    EXPECT_EQ(holder.getPageByName("Y").group, Index(3));
    holder.addPage(Page(4), nullptr, false);
    EXPECT_EQ(State(holder), "3 4 of 1=- 3=5 4=- ") << "no counter, no number";

    holder.clear();
    EXPECT_EQ(State(holder), "of ");
    EXPECT_FALSE(holder.containsPage(Page(1)));
    numbers.reset();
    EXPECT_EQ(numbers.next, 1U);
}

TEST(PrintOrder, ComparesPiecesAsNumbersOrBytes) {
    const std::tuple<const char*, const char*, const char*, bool, bool> cases[] = {
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
    for (const auto& [why, a, b, before, after] : cases) {
        EXPECT_EQ(RandomPageHolder::IsBefore(a, b), before) << why;
        EXPECT_EQ(RandomPageHolder::IsBefore(b, a), after) << why;
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
    EXPECT_EQ(State(holder), "2 4 6 1 of 1=4 2=1 3=- 4=2 5=- 6=3 7=- ") << "of equal orders the first, equal values";
    EXPECT_TRUE(holder.nextPage(Page(5)).IsEmpty());
    EXPECT_EQ(holder.getPageByName("none").group, Index(7));

    holder.excludePage(Page(2));
    holder.includePage(Page(3));
    holder.removePage(Page(4));
    holder.renumber();
    orders.reset();
    EXPECT_EQ(orders.base, "0") << "a reset keeps the print order";
    holder.addPage(Page(8), &orders, false);
    EXPECT_EQ(State(holder), "8 2 4 6 1 of 1=5 2=2 3=- 4=3 5=- 6=4 7=- 8=1 ");
    holder.clear();
    EXPECT_EQ(State(holder), "of ");
}

TEST(RandomPageHolder, HoldsEveryPageOnceThoughTheComparisonGoesInCircles) {
    RandomPageHolder holder;
    StringBaseNumberSupplier orders;
    const std::string circle[] = {"3", "05", "0a"};
    for (std::uint64_t i = 0; i < 300; ++i) {
        orders.base = circle[i % 3] + '.' + std::to_string(i);
        holder.addPage(Page(i + 1), &orders, false);
    }
    std::set<Index> sheets;
    for (unsigned position = 0; position < 300; ++position)
        sheets.insert(holder.getPage(position).group);
    EXPECT_EQ(sheets.size(), 300U);
    EXPECT_EQ(sheets.count({}), 0U);
}

}  // namespace
}  // namespace Quill
