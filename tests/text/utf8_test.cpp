#include "text/utf8.h"

#include <gtest/gtest.h>

namespace {

using Quill::Text::IsUtf8;
using Quill::Text::Utf8Length;

TEST(Utf8, TellsWellFormedCharactersFromAnythingElse) {
    using namespace std::string_view_literals;
    // clang-format off
    const struct { const char* why; std::string_view text; std::size_t length; } cases[] = {
        {"nothing", "", 0},
        {"NUL is a character", "\0"sv, 1},
        {"a byte that only continues", "\x80", 0},
        {"overlong in two bytes", "\xC1\xBF", 0},
        {"first of two bytes", "\xC2\x80", 2},
        {"last, and what follows does not matter", "\xDF\xBF\xFF", 2},
        {"cut off", "\xDF", 0},
        {"not continued", "\xDF\x40", 0},
        {"overlong in three bytes", "\xE0\x9F\xBF", 0},
        {"first of three bytes", "\xE0\xA0\x80", 3},
        {"before the surrogates", "\xED\x9F\xBF", 3},
        {"first surrogate", "\xED\xA0\x80", 0},
        {"after the surrogates", "\xEE\x80\x80", 3},
        {"third byte does not continue", "\xEF\xBF\xC0", 0},
        {"overlong in four bytes", "\xF0\x8F\xBF\xBF", 0},
        {"first of four bytes", "\xF0\x90\x80\x80", 4},
        {"U+10FFFF", "\xF4\x8F\xBF\xBF", 4},
        {"above U+10FFFF", "\xF4\x90\x80\x80", 0},
        {"no such first byte", "\xF5\x80\x80\x80", 0},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(Utf8Length(c.text), c.length) << c.why;
        EXPECT_EQ(IsUtf8(c.text), c.length == c.text.size()) << c.why;
    }
    EXPECT_FALSE(IsUtf8("ab\xFF"));
}

}  // namespace
