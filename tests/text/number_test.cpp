#include "text/number.h"

#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace Quill::Text {
namespace {

constexpr NumberStatus Ok = NumberStatus::Ok, None = NumberStatus::NoNumber, Out = NumberStatus::OutOfRange;

// A process locale that writes 1234.5 as "1.234,5": the C library's when the system has such a one, the C++ library's
// in any case.
class CommaLocale {
public:
    CommaLocale() : m_before(std::locale::global(std::locale(std::locale::classic(), new Punctuation))) {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "German"}) {
            if (std::setlocale(LC_ALL, name) != nullptr) break;
        }
    }
    ~CommaLocale() {
        std::locale::global(m_before);
        std::setlocale(LC_ALL, "C");
    }

private:
    struct Punctuation : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale m_before;
};

// A reason, a text, and the value, status and length that it is read with.
template <class T>
using Cases = std::vector<std::tuple<const char*, std::string_view, T, NumberStatus, std::size_t>>;

template <class T>
void Check(ParsedNumber<T> (*parse)(std::string_view) noexcept, const Cases<T>& cases) {
    for (const auto& [why, text, value, status, length] : cases) {
        const ParsedNumber<T> number = parse(text);
        EXPECT_EQ(std::tuple(number.value, number.status, number.length), std::tuple(value, status, length)) << why;
    }
}

TEST(ParseInteger, ReadsSpaceSignAndDigitsAndStopsThere) {
    const Cases<std::int32_t> cases = {
        {"the first other character ends it", " \t\n\v\f\r12b3", 12, Ok, 8},
        {"plus", "+7", 7, Ok, 2},
        {"leading zeros are not octal", "0010", 10, Ok, 4},
        {"no hexadecimal", "0x1F", 0, Ok, 1},
        {"nothing", "", 0, None, 0},
        {"a sign alone", "-", 0, None, 0},
        {"a blank after the sign", "- 7", 0, None, 0},
        {"a letter first", "x1", 0, None, 0},
        {"a byte above 127 is no space", "\xA0 1", 0, None, 0},
        {"a null character ends it", std::string_view("1\0002", 3), 1, Ok, 1},
        {"largest", "2147483647", 2147483647, Ok, 10},
        {"one more", "2147483648", 2147483647, Out, 10},
        {"smallest", "-2147483648", std::numeric_limits<std::int32_t>::min(), Ok, 11},
        {"one less", "-2147483649", std::numeric_limits<std::int32_t>::min(), Out, 11},
        {"beyond every type, all digits are read", "99999999999999999999999x", 2147483647, Out, 23},
    };
    Check(ParseInt32, cases);
}

TEST(ParseInteger, SaturatesAtTheLimitsOfEachType) {
    const Cases<std::int64_t> wide = {
        {"one more", "9223372036854775808", std::numeric_limits<std::int64_t>::max(), Out, 19},
        {"one less", "-9223372036854775809", std::numeric_limits<std::int64_t>::min(), Out, 20},
    };
    const Cases<std::uint32_t> plain = {
        {"one more", "4294967296", 4294967295U, Out, 10},
        {"negative numbers do not wrap round", "-1", 0, Out, 2},
        {"minus zero is zero", "-0", 0, Ok, 2},
    };
    const Cases<std::uint64_t> index = {
        {"one more", "18446744073709551616", 18446744073709551615U, Out, 20},
        {"negative numbers do not wrap round", "-18446744073709551617", 0, Out, 21},
    };
    Check(ParseInt64, wide);
    Check(ParseUInt32, plain);
    Check(ParseUInt64, index);
}

TEST(ParseDouble, ReadsDecimalFractionsAndNothingElse) {
    const CommaLocale locale;
    constexpr double Largest = std::numeric_limits<double>::max();
    const std::string tiny = "0." + std::string(400, '0') + "1", huge = "1" + std::string(400, '0');
    const std::string meets = tiny + "e401";
    const Cases<double> cases = {
        {"a point, whatever the locale", "1.5", 1.5, Ok, 3},
        {"a comma ends it, whatever the locale", "1,5", 1.0, Ok, 1},
        {"no digit before the point", " -.5x", -0.5, Ok, 4},
        {"no digit after the point", "+2.", 2.0, Ok, 3},
        {"an exponent without digits is not one", "2e+", 2.0, Ok, 1},
        {"no hexadecimal", "0x1F", 0.0, Ok, 1},
        {"a point alone", ".", 0.0, None, 0},
        {"an exponent alone", "e5", 0.0, None, 0},
        {"infinity in full, after a sign", "-Infinity", 0.0, None, 0},
        {"not a number", "nan", 0.0, None, 0},
        {"nothing", "", 0.0, None, 0},
        {"the largest", "1.7976931348623157e308", Largest, Ok, 22},
        {"too large by exponent", "-1e400", -Largest, Out, 6},
        {"too large, exponent beyond an integer", "1e99999999999999", Largest, Out, 16},
        {"too large by digits", huge, Largest, Out, 401},
        {"too small by exponent", "1e-400", 0.0, Out, 6},
        {"too small, exponent beyond an integer", "1e-99999999999999", 0.0, Out, 17},
        {"too small by digits", tiny, 0.0, Out, 403},
        {"zero is in range with any exponent", "0e999", 0.0, Ok, 5},
        {"digits and exponent that make up for each other", meets, 1.0, Ok, 407},
    };
    Check(ParseDouble, cases);
    EXPECT_TRUE(std::signbit(ParseDouble("-0").value));
}

TEST(Render, WritesEveryWidthPlainlyWhateverTheLocale) {
    const CommaLocale locale;
    EXPECT_EQ(Render(short{-1234}), "-1234");
    EXPECT_EQ(Render(std::numeric_limits<long long>::min()), "-9223372036854775808");
    EXPECT_EQ(Render(std::numeric_limits<unsigned long long>::max()), "18446744073709551615");
    std::string text = "n";
    AppendNumber(text, std::size_t{1234567});
    EXPECT_EQ(text, "n1234567");
}

}  // namespace
}  // namespace Quill::Text
