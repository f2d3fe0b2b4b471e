#include "text/calendar.h"

namespace Quill::Text {

std::optional<std::tm> LocalFields(std::int32_t seconds) noexcept {
    const std::time_t time = seconds;
    std::tm fields{};
    if (localtime_r(&time, &fields) == nullptr) return std::nullopt;
    return fields;
}

}  // namespace Quill::Text
