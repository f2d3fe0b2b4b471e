#include "labels/time_stamp.h"

#include <ctime>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/small_design.h"

namespace {

using Quill::Utils::time_stamp;

TEST(TimeStamp, HasARawAndAFormattedForm) {
    const std::tuple<std::int32_t, const char*, const char*> cases[] = {
        {1710407107, "1710407107", "9:05:07_3-14-24"},         {0, "0", "0:00:00_1-1-70"},
        {951782400, "951782400", "0:00:00_2-29-00"},           {946684799, "946684799", "23:59:59_12-31-99"},
        {2147483647, "2147483647", "3:14:07_1-19-38"},         {-1, "-1", "23:59:59_12-31-69"},
        {-2147483647 - 1, "-2147483648", "20:45:52_12-13-01"},
    };
    for (const auto& [seconds, raw, formatted] : cases) {
        EXPECT_EQ(time_stamp::at(seconds, time_stamp::raw), raw);
        EXPECT_EQ(time_stamp::at(seconds, time_stamp::formatted), formatted);
        EXPECT_EQ(time_stamp::at(seconds, time_stamp::mode(2)), formatted) << "every mode but 1";
    }
    for (const char* raw : {"1700000000", "never", " "})
        EXPECT_TRUE(time_stamp::is_raw(raw)) << raw;
    for (const char* formatted : {"12:00:00_1-2-03", ":", ""})
        EXPECT_FALSE(time_stamp::is_raw(formatted)) << formatted;
}

TEST(TimeStamp, OfThisMomentIsTheClocks) {
    std::string raw, formatted, rawAfter;
    const std::time_t before = std::time(nullptr);
    do {
        raw = time_stamp::current(time_stamp::raw);
        formatted = time_stamp::current(time_stamp::formatted);
        rawAfter = time_stamp::current(time_stamp::raw);
    } while (raw != rawAfter);  // the second changed meanwhile
    EXPECT_TRUE(std::stoll(raw) >= before && std::stoll(raw) <= std::time(nullptr)) << raw;
    EXPECT_EQ(formatted, time_stamp::at(std::stoi(raw), time_stamp::formatted));
}

TEST(TimeStamp, OrderOfStoredDesignsStays) {
    struct Case {
        int rank;  // equal ranks are equally old
        const char *stamp, *why;
    };
    const Case cases[] = {
        {0, "", "no stamp is before every date"},
        {0, nullptr, "null is no stamp"},
        {1, "-2147483648", "December 1901"},
        {1, "-99999999999", "clamped to 32 bits"},
        {2, "-1", "before 1970 the fields are broken down as always"},
        {3, "0", "January 1970"},
        {3, "never", "no number is second 0"},
        {4, " 1x", "the number ends at the first other character"},
        {5, "788918400", "January 1995: month 0"},
        {6, "0:00:00_1-1--5", "a year of -5 is 1995; month 1"},
        {7, "::", "all pieces are empty, and the year is 2000"},
        {8, "0:00:00_-1-1-24", "the month is empty, the year is cut from 1-24"},
        {9, "1:02:03_4", "day and year are cut from the front again"},
        {9, "1:02:03_4-1-01", "as if this had been written"},
        {10, "5:06", "so are second, month, day and year"},
        {10, "5:06:05_5-5-05", "as if this had been written"},
        {11, "1:02:03_4-5-6.7", "the year ends at a full stop"},
        {11, "1:02:03_4-5-06", "as if this had been written"},
        {12, "1700000000", "14 November 2023, 22:13:20: month 10"},
        {13, "22:13:20_11-14-23", "the same moment is a month later when formatted"},
        {14, "1703980800", "31 December 2023: month 11, and day 31 after day 14"},
        {15, "23:59:59_12-31-23", "the end of the year"},
        {16, "0:00:00_1-1-24", "the year decides first"},
        {17, "9:5:7_3-14-24", "padding plays no part"},
        {17, "9x:05:07_3-14-24", "nor what follows a number"},
        {18, "9:05:08_3-14-24", "the second decides last"},
        {19, "9:06:07_3-14-24", "before it the minute"},
        {20, "10:00:00_3-14-24", "before it the hour, as a number"},
        {21, "0:00:00_3-15-24", "before it the day"},
        {22, "2147483647", "January 2038"},
        {22, "99999999999", "clamped to 32 bits"},
        {23, "0:00:00_1-1-99", "two-digit years are of this century"},
        {24, "0:00:00_1-1-99999999999", "clamped, and still 2000 is added"},
    };
    for (const Case& a : cases)
        for (const Case& b : cases)
            EXPECT_EQ(time_stamp::is_less(a.stamp, b.stamp), a.rank < b.rank)
                << a.rank << " (" << a.why << ") against " << b.rank << " (" << b.why << ")";
    EXPECT_TRUE(time_stamp::comparator_func("0", "1") && !time_stamp::comparator_func("1", "0"));
}

using StoredTimeStamp = Tests::SmallDesign;

TEST_F(StoredTimeStamp, IsAnInternalAttributeOfSheetOrSymbol) {
    std::string stamp = "what stood there";
    EXPECT_TRUE(editor.SetAttribute(sheetIndex, "__BlkDate", "1"));
    EXPECT_TRUE(time_stamp::read(*sheet, stamp) && stamp.empty()) << "the bare key is not looked for";
    EXPECT_TRUE(time_stamp::write(*writableSheet, "1") && time_stamp::write(*writableSheet, "Other", "2"));
    EXPECT_TRUE(time_stamp::write(*writableComp, "3"));
    EXPECT_EQ(Value(sheet, "$$Internal___BlkDate") + " " + Value(sheet, "$$Internal_Other"), "1 2");
    EXPECT_EQ(Value(comp, "$$Internal___BlkDate", Orin::EAttributeType::System), "3");
    EXPECT_TRUE(time_stamp::read(*sheet, stamp) && stamp == "1");
    EXPECT_TRUE(time_stamp::read(*sheet, "Other", stamp) && stamp == "2");
    EXPECT_TRUE(time_stamp::read(*comp, stamp) && stamp == "3");

    EXPECT_TRUE(time_stamp::write(*writableSheet, "") && time_stamp::write(*writableComp, nullptr));
    EXPECT_EQ(Value(sheet, "$$Internal___BlkDate"), "none");
    EXPECT_TRUE(time_stamp::read(*comp, stamp) && stamp.empty());
}

}  // namespace
