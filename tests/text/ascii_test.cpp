#include "text/ascii.h"

#include <map>

#include <gtest/gtest.h>

#include "text/trim.h"

namespace Quill::Text {
namespace {

TEST(LetterCase, OnlyAsciiLettersFold) {
    EXPECT_EQ(ToLower("AZ az@[`{ 09\xC4\xE4"), "az az@[`{ 09\xC4\xE4");
    EXPECT_EQ(ToUpper("AZ az@[`{ 09\xC4\xE4"), "AZ AZ@[`{ 09\xC4\xE4");
}

TEST(LetterCase, ComparisonOrdersByFoldedBytes) {
    // clang-format off
    const struct { const char* why; std::string_view smaller, greater; } cases[] = {
        {"letters, not their case, decide", "aB", "Ac"},
        {"an underscore sorts before letters of either case", "_", "A"},
        {"a beginning sorts first", "net", "NET1"},
        {"bytes above 127 are large, not negative", "z", "\xE4"},
        {"a null character is content", {"a", 1}, {"A\0", 2}},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_LT(CompareNoCase(c.smaller, c.greater), 0);
        EXPECT_GT(CompareNoCase(c.greater, c.smaller), 0);
        EXPECT_FALSE(EqualNoCase(c.smaller, c.greater));
    }
    EXPECT_TRUE(EqualNoCase("Net_1", "nET_1"));
    const std::map<std::string, int, LessNoCase> map = {{"BUS", 1}};
    EXPECT_TRUE(map.contains(std::string_view("bus")));
}

TEST(Trim, TakesBlanksOffBothEndsAndKeepsNewlines) {
    EXPECT_EQ(Trim(" \t\ra b \t\r"), "a b");
    EXPECT_EQ(Trim("\n a \n"), "\n a \n");
    EXPECT_EQ(Trim(" \t\r"), "");
    EXPECT_EQ(Trim("xxaxbx", "x"), "axb");
}

}  // namespace
}  // namespace Quill::Text
