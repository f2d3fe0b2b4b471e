#include "text/number.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <type_traits>

#include "text/ascii.h"

namespace Quill::Text {

namespace {

struct Start {
    std::size_t position = 0;  // of the first character after white space and sign
    bool negative = false;
};

Start SkipToDigits(std::string_view text) noexcept {
    Start start;
    while (start.position < text.size() && IsSpace(text[start.position]))
        ++start.position;
    if (start.position < text.size() && (text[start.position] == '-' || text[start.position] == '+')) {
        start.negative = text[start.position] == '-';
        ++start.position;
    }
    return start;
}

template <class T>
ParsedNumber<T> ParseInteger(std::string_view text) noexcept {
    using Unsigned = std::make_unsigned_t<T>;
    using Limits = std::numeric_limits<T>;

    ParsedNumber<T> result;
    const Start start = SkipToDigits(text);
    const char* const first = text.data() + start.position;
    const char* const last = text.data() + text.size();
    if (first == last || !IsDigit(*first)) return result;

    Unsigned magnitude = 0;
    const auto [end, error] = std::from_chars(first, last, magnitude);
    result.length = static_cast<std::size_t>(end - text.data());
    result.status = NumberStatus::Ok;

    Unsigned largest = static_cast<Unsigned>(Limits::max());
    if (start.negative) largest = std::is_signed_v<T> ? static_cast<Unsigned>(largest + 1U) : Unsigned{0};
    if (error != std::errc{} || magnitude > largest) {
        result.status = NumberStatus::OutOfRange;
        magnitude = largest;
    }
    result.value = static_cast<T>(start.negative ? static_cast<Unsigned>(Unsigned{0} - magnitude) : magnitude);
    return result;
}

// The power of ten of the first digit that is not 0, counted from the point; `number` is a decimal fraction that the
// standard conversion has accepted. It tells a value that is too large from one that is too small.
std::int64_t DecimalExponent(std::string_view number) noexcept {
    const std::size_t mark = number.find_first_of("eE");
    const std::string_view mantissa = number.substr(0, mark);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = std::min(mantissa.find_first_not_of("0."), mantissa.size());
    const std::int64_t place = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
    return place + (mark == std::string_view::npos ? 0 : ParseInt32(number.substr(mark + 1)).value);
}

template <class T>
void Append(std::string& text, T value) {
    char buffer[std::numeric_limits<T>::digits10 + 3];
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    static_cast<void>(error);  // the buffer holds every value of T
    text.append(buffer, end);
}

}  // namespace

ParsedNumber<std::int32_t> ParseInt32(std::string_view text) noexcept {
    return ParseInteger<std::int32_t>(text);
}
ParsedNumber<std::int64_t> ParseInt64(std::string_view text) noexcept {
    return ParseInteger<std::int64_t>(text);
}
ParsedNumber<std::uint32_t> ParseUInt32(std::string_view text) noexcept {
    return ParseInteger<std::uint32_t>(text);
}
ParsedNumber<std::uint64_t> ParseUInt64(std::string_view text) noexcept {
    return ParseInteger<std::uint64_t>(text);
}

ParsedNumber<double> ParseDouble(std::string_view text) noexcept {
    ParsedNumber<double> result;
    const Start start = SkipToDigits(text);
    const char* const first = text.data() + start.position;
    const char* const last = text.data() + text.size();
    // Only a digit or a point begins a number here; this leaves out the words "inf" and "nan".
    if (first == last || !(IsDigit(*first) || *first == '.')) return result;

    double magnitude = 0.0;
    const auto [end, error] = std::from_chars(first, last, magnitude);
    if (error == std::errc::invalid_argument) return result;
    result.length = static_cast<std::size_t>(end - text.data());
    result.status = NumberStatus::Ok;
    if (error == std::errc::result_out_of_range) {
        result.status = NumberStatus::OutOfRange;
        const std::string_view number(first, static_cast<std::size_t>(end - first));
        magnitude = DecimalExponent(number) > 0 ? std::numeric_limits<double>::max() : 0.0;
    }
    result.value = start.negative ? -magnitude : magnitude;
    return result;
}

void AppendSigned(std::string& text, std::int64_t value) {
    Append(text, value);
}
void AppendUnsigned(std::string& text, std::uint64_t value) {
    Append(text, value);
}

}  // namespace Quill::Text
