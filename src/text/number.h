// Decimal numbers out of and into text, whatever the process locale is.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Quill::Text {

enum class NumberStatus {
    Ok,
    NoNumber,    // no digit where the number should begin; the value is 0
    OutOfRange,  // a number that the type cannot hold; the value is the nearest one that it can
};

template <class T>
struct ParsedNumber {
    T value{};
    NumberStatus status = NumberStatus::NoNumber;
    std::size_t length = 0;  // bytes read, with leading white space and sign; 0 when there is no number

    constexpr bool Ok() const noexcept { return status == NumberStatus::Ok; }
};

// Reads the number at the front of `text`: white space, a sign, then digits up to the first other character, which
// ends it. So " 12b" is 12 and "-7" is -7, "- 7" and "x1" are no number. Values that do not fit saturate; for an
// unsigned type every negative number but "-0" is out of range and reads as 0.
ParsedNumber<std::int32_t> ParseInt32(std::string_view text) noexcept;
ParsedNumber<std::int64_t> ParseInt64(std::string_view text) noexcept;
ParsedNumber<std::uint32_t> ParseUInt32(std::string_view text) noexcept;
ParsedNumber<std::uint64_t> ParseUInt64(std::string_view text) noexcept;

// The same for a decimal fraction with an optional exponent ("1.5", "-.5", "2e3"). The words for infinity and
// not-a-number are no numbers. A value too large is out of range and reads as the largest finite one; one too small
// to be told from zero is out of range and reads as 0.
ParsedNumber<double> ParseDouble(std::string_view text) noexcept;

// Appends the plain decimal form: a leading "-" for negative values, no padding, no grouping.
void AppendSigned(std::string& text, std::int64_t value);
void AppendUnsigned(std::string& text, std::uint64_t value);

// An integer that stands for a number: not a truth value and not a character. An 8-bit integer counts as a character,
// since nothing tells it from one.
template <class T>
concept Number = std::integral<T> && sizeof(T) >= sizeof(short) && !std::same_as<T, wchar_t> &&
                 !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

template <Number T>
void AppendNumber(std::string& text, T value) {
    if constexpr (std::signed_integral<T>) {
        AppendSigned(text, value);
    } else {
        AppendUnsigned(text, value);
    }
}

template <Number T>
std::string Render(T value) {
    std::string text;
    AppendNumber(text, value);
    return text;
}

}  // namespace Quill::Text
