// Well-formed UTF-8.
#pragma once

#include <cstddef>
#include <string_view>

namespace Quill::Text {

// The number of bytes of the character at the front of `text`, 1 to 4; 0 when `text` is empty or does not begin with a
// well-formed one. Overlong forms, surrogates and values above U+10FFFF are not well-formed.
std::size_t Utf8Length(std::string_view text) noexcept;

bool IsUtf8(std::string_view text) noexcept;

}  // namespace Quill::Text
