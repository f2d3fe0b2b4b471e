#include "text/trim.h"

namespace Quill::Text {

std::string_view Trim(std::string_view text, std::string_view characters) noexcept {
    const std::size_t first = text.find_first_not_of(characters);
    if (first == std::string_view::npos) return {};
    const std::size_t last = text.find_last_not_of(characters);
    return text.substr(first, last - first + 1);
}

}  // namespace Quill::Text
