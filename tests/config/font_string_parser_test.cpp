#include "config/font_string_parser.h"

#include <tuple>

#include <gtest/gtest.h>

using Quill::Fonts::CFontStringParser;
using FontData = CFontStringParser::CFontData;

static auto Fields(const FontData& d) {
    return std::tuple(d.Style(), d.Custom(), d.FontFace(), d.FontStyle(), d.FontWeight(), d.FontStrikeout(),
                      d.FontUnderline(), d.FontBold(), d.FontItalic(), d.FontCharset());
}

TEST(FontString, WritesTheStyleAndOnlyWhenCustomTheFields) {
    EXPECT_EQ(CFontStringParser::toString(FontData()), "0");
    EXPECT_EQ(CFontStringParser::toString({3, true, "Arial", "", 700, 0, 0, 1, 0, 0}), "3|Arial|0|700|0|0|1|0|0");
    EXPECT_EQ(CFontStringParser::toString({-3, true, "", "Bold X", 1, 2, 3, 4, 5, -6}), "-3|0|Bold X|1|2|3|4|5|-6");
    EXPECT_EQ(CFontStringParser::toString({12, false, "Arial", "x", 1, 2, 3, 4, 5, 6}), "12");
}

TEST(FontString, ReadsWhatIsThereAndKeepsTheRest) {
    const FontData custom(1, true, "F", "S", 11, 12, 13, 14, 15, 16);
    const FontData plain(1, false, "F", "S", 11, 12, 13, 14, 15, 16);
    // clang-format off
    const struct { const char *why, *text; FontData before, want; } cases[] = {
        {"a style alone ends custom only",  "12",    custom, {12, false, "F", "S", 11, 12, 13, 14, 15, 16}},
        {"no text is style 0",              "",      custom, {0, false, "F", "S", 11, 12, 13, 14, 15, 16}},
        {"no token keeps custom: off",      "5|",    plain,  {5, false, "F", "S", 11, 12, 13, 14, 15, 16}},
        {"no token keeps custom: on",       "5||",   custom, {5, true, "F", "S", 11, 12, 13, 14, 15, 16}},
        {"one token is enough for custom",  "|A",    plain,  {0, true, "A", "S", 11, 12, 13, 14, 15, 16}},
        {"0 is an empty name, 00 is not",   "1|0|00", plain, {1, true, "", "00", 11, 12, 13, 14, 15, 16}},
        {"empty fields shift the others",   "1||Regular|700|x", plain, {1, true, "Regular", "700", 0, 12, 13, 14, 15, 16}},
        {"all fields, further are ignored", "3|A b|R|1|2|3|4|5|6|7|", plain, {3, true, "A b", "R", 1, 2, 3, 4, 5, 6}},
        {"numbers end at other characters", " -7x|A|B|9pt|x| 4", plain, {-7, true, "A", "B", 9, 0, 4, 14, 15, 16}},
        {"numbers saturate",                "99999999999|A|B|-99999999999", plain,
         {2147483647, true, "A", "B", -2147483647 - 1, 12, 13, 14, 15, 16}},
    };
    // clang-format on
    for (const auto& c : cases) {
        FontData data = c.before;
        CFontStringParser::fromString(c.text, data);
        EXPECT_EQ(Fields(data), Fields(c.want)) << c.why;
    }
    FontData data;
    data.FontFace("4|Face|Style");
    CFontStringParser::fromString(data.FontFace(), data);
    EXPECT_EQ(data.FontStyle(), "Style") << "the text may be a field of the record";
}
