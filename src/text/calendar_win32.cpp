#include "text/calendar.h"

namespace Quill::Text {

// The conversion of this system knows no time before 1970. The calendar repeats every 28 years within the 32-bit
// range, so such a time is converted three of these later and its year set back.
std::optional<std::tm> LocalFields(std::int32_t seconds) noexcept {
    constexpr int YearsLater = 3 * 28;
    constexpr __time64_t SecondsLater = YearsLater / 4 * (4 * 365 + 1) * __time64_t{86400};
    const bool before = seconds < 0;
    const __time64_t time = before ? seconds + SecondsLater : seconds;
    std::tm fields{};
    if (_localtime64_s(&fields, &time) != 0) return std::nullopt;
    if (before) fields.tm_year -= YearsLater;
    return fields;
}

}  // namespace Quill::Text
