#include "labels/time_stamp.h"

#include <ctime>
#include <string>
#include <tuple>
#include <vector>

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
    // Those of a line are equally old, and older than those of the lines below.
    const std::vector<std::vector<const char*>> lines = {
        {"", nullptr},                          // no stamp is before every date
        {"-2147483648", "-99999999999"},        // December 1901, clamped to 32 bits
        {"-1"},                                 // before 1970 the fields are broken down as always
        {"0", "never"},                         // January 1970; no number is second 0
        {" 1x"},                                // the number ends at the first other character
        {"788918400"},                          // January 1995: month 0
        {"0:00:00_1-1--5"},                     // a year of -5 is 1995; month 1
        {"::"},                                 // all pieces are empty, and the year is 2000
        {"0:00:00_-1-1-24"},                    // the month is empty, the year is cut from 1-24
        {"1:02:03_4", "1:02:03_4-1-01"},        // day and year are cut from the front again
        {"5:06", "5:06:05_5-5-05"},             // so are second, month, day and year
        {"1:02:03_4-5-6.7", "1:02:03_4-5-06"},  // the year ends at a full stop
        {"1700000000"},                         // 14 November 2023, 22:13:20: month 10
        {"22:13:20_11-14-23"},                  // the same moment is a month later when formatted
        {"1703980800"},                         // 31 December 2023: month 11, and day 31 after day 14
        {"23:59:59_12-31-23"},                  // the end of the year
        {"0:00:00_1-1-24"},                     // the year decides first
        {"9:5:7_3-14-24", "9x:05:07_3-14-24"},  // padding plays no part, nor what follows a number
        {"9:05:08_3-14-24"},                    // the second decides last
        {"9:06:07_3-14-24"},                    // before it the minute
        {"10:00:00_3-14-24"},                   // before it the hour, as a number
        {"0:00:00_3-15-24"},                    // before it the day
        {"2147483647", "99999999999"},          // January 2038, clamped to 32 bits
        {"0:00:00_1-1-99"},                     // two-digit years are of this century
        {"0:00:00_1-1-99999999999"},            // clamped, and still 2000 is added
    };
    for (const auto& line : lines)
        for (const auto& other : lines)
            for (const char* const a : line)
                for (const char* const b : other)
                    EXPECT_EQ(time_stamp::is_less(a, b), &line < &other)
                        << (a ? a : "null") << " against " << (b ? b : "null");
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
