// Removal of surrounding blanks.
#pragma once

#include <string_view>

namespace Quill::Text {

// The characters that surround values in designs: blank, tab, carriage return. A newline is content.
inline constexpr std::string_view BlankCharacters = " \t\r";

// The part of `text` between its first and its last character that is not one of `characters`; empty when there is
// none.
std::string_view Trim(std::string_view text, std::string_view characters = BlankCharacters) noexcept;

}  // namespace Quill::Text
