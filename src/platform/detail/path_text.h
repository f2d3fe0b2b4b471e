// How a path's text is cut into root and elements. Both syntaxes are known everywhere, so that each can be checked
// on any platform.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/ascii.h"

namespace zolt::filesystem {

struct PosixSyntax {
    static constexpr char Separator = '/';
    static constexpr bool IsSeparator(char c) noexcept { return c == '/'; }
    static constexpr std::size_t RootNameLength(std::string_view) noexcept { return 0; }
};

// Text of the ANSI code page is looked at byte by byte: in double-byte code pages a "\" may be half a character, which
// no part of the library tells apart.
struct WindowsSyntax {
    static constexpr char Separator = '\\';
    static constexpr bool IsSeparator(char c) noexcept { return c == '/' || c == '\\'; }

    // Of "C:" and of the server in "\\server\share".
    static constexpr std::size_t RootNameLength(std::string_view text) noexcept {
        if (text.size() >= 2 && Quill::Text::IsLetter(text[0]) && text[1] == ':') return 2;
        if (text.size() < 3 || !IsSeparator(text[0]) || !IsSeparator(text[1]) || IsSeparator(text[2])) return 0;
        std::size_t end = 3;
        while (end < text.size() && !IsSeparator(text[end]))
            ++end;
        return end;
    }
};

#ifdef _WIN32
using NativeSyntax = WindowsSyntax;
#else
using NativeSyntax = PosixSyntax;
#endif

// The root's name and the separators after it: all of "/", the "C:\" of "C:\lib".
template <class Syntax>
constexpr std::size_t RootLength(std::string_view text) noexcept {
    std::size_t end = Syntax::RootNameLength(text);
    while (end < text.size() && Syntax::IsSeparator(text[end]))
        ++end;
    return end;
}

// Where the last element begins; the text's length when it ends in a separator or is all root.
template <class Syntax>
constexpr std::size_t LastElement(std::string_view text) noexcept {
    const std::size_t root = RootLength<Syntax>(text);
    std::size_t begin = text.size();
    while (begin > root && !Syntax::IsSeparator(text[begin - 1]))
        --begin;
    return begin;
}

template <class Syntax>
constexpr std::string_view ParentOf(std::string_view text) noexcept {
    const std::size_t root = RootLength<Syntax>(text);
    std::size_t end = LastElement<Syntax>(text);
    while (end > root && Syntax::IsSeparator(text[end - 1]))
        --end;
    return text.substr(0, end);
}

template <class Syntax>
std::string Joined(std::string_view base, std::string_view element) {
    if (element.empty()) return std::string(base);
    if (RootLength<Syntax>(element) > 0) return std::string(element);
    std::string joined;
    joined.reserve(base.size() + 1 + element.size());
    joined = base;
    // "C:lib" names a place in the drive's current directory, so nothing may come between a bare drive and the element.
    const bool bareDrive = base.size() == 2 && Syntax::RootNameLength(base) == 2;
    if (!base.empty() && !bareDrive && !Syntax::IsSeparator(base.back())) joined += Syntax::Separator;
    joined += element;
    return joined;
}

}  // namespace zolt::filesystem
