#include "attributes/value_text.h"

#include "text/trim.h"

namespace NQuillUtils {

bool TrimValue(std::string& value) {
    const std::string_view trimmed = Quill::Text::Trim(value);
    if (trimmed.empty() || trimmed.size() == value.size()) return false;
    value = std::string(trimmed);
    return true;
}

void TrimZero(std::string& value) {
    if (value.find('.') == std::string::npos) return;
    value.erase(value.find_last_not_of('0') + 1);  // at most up to the point
}

}  // namespace NQuillUtils
