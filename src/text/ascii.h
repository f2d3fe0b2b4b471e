// Letters, digits and letter case in ASCII, whatever the process locale is. Bytes above 127 are never letters.
#pragma once

#include <string>
#include <string_view>

namespace Quill::Text {

constexpr bool IsDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
constexpr bool IsUpper(char c) noexcept {
    return c >= 'A' && c <= 'Z';
}
constexpr bool IsLower(char c) noexcept {
    return c >= 'a' && c <= 'z';
}
constexpr bool IsLetter(char c) noexcept {
    return IsUpper(c) || IsLower(c);
}

// White space as the C library's default locale has it: blank, tab, newline, vertical tab, form feed, return.
constexpr bool IsSpace(char c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr char ToLower(char c) noexcept {
    return IsUpper(c) ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr char ToUpper(char c) noexcept {
    return IsLower(c) ? static_cast<char>(c - 'a' + 'A') : c;
}

// The value of a hexadecimal digit of either case; -1 for other characters.
constexpr int HexDigit(char c) noexcept {
    if (IsDigit(c)) return c - '0';
    const char small = ToLower(c);
    return small >= 'a' && small <= 'f' ? small - 'a' + 10 : -1;
}

std::string ToLower(std::string_view text);
std::string ToUpper(std::string_view text);

// Negative, zero or positive as `a` sorts before, with or after `b` when capital letters count as small ones.
// Other bytes keep their unsigned order, so "_" sorts before letters; the shorter of two equal beginnings is first.
int CompareNoCase(std::string_view a, std::string_view b) noexcept;

bool EqualNoCase(std::string_view a, std::string_view b) noexcept;

// Sort predicate by CompareNoCase; keys of any text type can be looked up without a copy.
struct LessNoCase {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const noexcept { return CompareNoCase(a, b) < 0; }
};

}  // namespace Quill::Text
