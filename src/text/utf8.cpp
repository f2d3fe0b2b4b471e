#include "text/utf8.h"

namespace Quill::Text {

std::size_t Utf8Length(std::string_view text) noexcept {
    const auto byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    if (text.empty()) return 0;
    const unsigned first = byte(0);
    if (first < 0x80) return 1;
    const std::size_t length = first < 0xC2 ? 0U : first < 0xE0 ? 2U : first < 0xF0 ? 3U : first < 0xF5 ? 4U : 0U;
    if (length == 0 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    // The second byte tells overlong forms, surrogates and values that are too large.
    const unsigned second = byte(1);
    if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F)) return 0;
    if ((first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F)) return 0;
    return length;
}

bool IsUtf8(std::string_view text) noexcept {
    while (!text.empty()) {
        const std::size_t length = Utf8Length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

}  // namespace Quill::Text
