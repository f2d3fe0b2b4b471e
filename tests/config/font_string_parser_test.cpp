#include "config/font_string_parser.h"

#include <tuple>

#include <gtest/gtest.h>

using Quill::Fonts::CFontStringParser;
using FontData = CFontStringParser::CFontData;

namespace {

auto Fields(const FontData& d) {
    return std::tuple(d.Style(), d.Custom(), d.FontFace(), d.FontStyle(), d.FontWeight(), d.FontStrikeout(),
                      d.FontUnderline(), d.FontBold(), d.FontItalic(), d.FontCharset());
}

}  // namespace

TEST(FontString, WritesTheStyleAndOnlyWhenCustomTheFields) {
    EXPECT_EQ(CFontStringParser::toString(FontData()), "0");
    EXPECT_EQ(CFontStringParser::toString(FontData(3, true, "Arial", "", 700, 0, 0, 1, 0, 0)),
              "3|Arial|0|700|0|0|1|0|0");
    EXPECT_EQ(CFontStringParser::toString(FontData(-3, true, "", "Bold Italic", 1, 2, 3, 4, 5, -6)),
              "-3|0|Bold Italic|1|2|3|4|5|-6");
    EXPECT_EQ(CFontStringParser::toString(FontData(12, false, "Arial", "x", 1, 2, 3, 4, 5, 6)), "12");
}

TEST(FontString, ReadsWhatIsThereAndKeepsTheRest) {
    const FontData old(1, true, "F", "S", 11, 12, 13, 14, 15, 16);
    const FontData oldPlain(1, false, "F", "S", 11, 12, 13, 14, 15, 16);
    struct Case {
        const char* why;
        FontData before;
        const char* text;
        FontData want;
    };
    const Case cases[] = {
        {"a style alone ends custom only", old, "12", {12, false, "F", "S", 11, 12, 13, 14, 15, 16}},
        {"no text is style 0", old, "", {0, false, "F", "S", 11, 12, 13, 14, 15, 16}},
        {"all fields", oldPlain, "3|A b|R|1|2|3|4|5|6", {3, true, "A b", "R", 1, 2, 3, 4, 5, 6}},
        {"no token keeps custom: off", oldPlain, "5|", {5, false, "F", "S", 11, 12, 13, 14, 15, 16}},
        {"no token keeps custom: on", old, "5||", {5, true, "F", "S", 11, 12, 13, 14, 15, 16}},
        {"one token is enough for custom", oldPlain, "5|A", {5, true, "A", "S", 11, 12, 13, 14, 15, 16}},
        {"an empty field shifts the others",
         oldPlain,
         "1||Regular|700|x",
         {1, true, "Regular", "700", 0, 12, 13, 14, 15, 16}},
        {"0 is an empty name, 00 is not", oldPlain, "1|0|00", {1, true, "", "00", 11, 12, 13, 14, 15, 16}},
        {"further tokens are ignored", oldPlain, "1|A|B|1|2|3|4|5|6|7|", {1, true, "A", "B", 1, 2, 3, 4, 5, 6}},
        {"numbers end at other characters", oldPlain, " -7x|A|B|9pt|x| 4", {-7, true, "A", "B", 9, 0, 4, 14, 15, 16}},
        {"numbers saturate",
         oldPlain,
         "99999999999|A|B|-99999999999",
         {2147483647, true, "A", "B", -2147483647 - 1, 12, 13, 14, 15, 16}},
        {"no style before the separator", oldPlain, "|A", {0, true, "A", "S", 11, 12, 13, 14, 15, 16}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        FontData data = c.before;
        CFontStringParser::fromString(c.text, data);
        EXPECT_EQ(Fields(data), Fields(c.want));
    }
}

TEST(FontString, ReadsItsOwnTextButANameThatIsZero) {
    const FontData font(7, true, "0", "Semi Bold", 600, 1, 0, 1, 0, 238);
    FontData data;
    CFontStringParser::fromString(CFontStringParser::toString(font), data);
    EXPECT_EQ(Fields(data), Fields(FontData(7, true, "", "Semi Bold", 600, 1, 0, 1, 0, 238)));

    data.FontFace("4|Face|Style");
    CFontStringParser::fromString(data.FontFace(), data);
    EXPECT_EQ(data.FontStyle(), "Style") << "the text may be a field of the record";
}
