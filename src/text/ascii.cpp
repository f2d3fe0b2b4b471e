#include "text/ascii.h"

#include <algorithm>

namespace Quill::Text {

std::string ToLower(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        c = ToLower(c);
    return result;
}

std::string ToUpper(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        c = ToUpper(c);
    return result;
}

int CompareNoCase(std::string_view a, std::string_view b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = static_cast<unsigned char>(ToLower(a[i])) - static_cast<unsigned char>(ToLower(b[i]));
        if (difference != 0) return difference;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

bool EqualNoCase(std::string_view a, std::string_view b) noexcept {
    return a.size() == b.size() && CompareNoCase(a, b) == 0;
}

}  // namespace Quill::Text
