#include "text/calendar.h"

#include <algorithm>
#include <chrono>
#include <limits>

namespace Quill::Text {

std::tm UtcFields(std::int32_t seconds) noexcept {
    namespace chrono = std::chrono;
    const chrono::sys_seconds time{chrono::seconds(seconds)};
    const chrono::sys_days day = chrono::floor<chrono::days>(time);
    const chrono::year_month_day date(day);
    const chrono::hh_mm_ss<chrono::seconds> clock(time - day);

    std::tm fields{};
    fields.tm_year = static_cast<int>(date.year()) - 1900;
    fields.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    fields.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    fields.tm_hour = static_cast<int>(clock.hours().count());
    fields.tm_min = static_cast<int>(clock.minutes().count());
    fields.tm_sec = static_cast<int>(clock.seconds().count());
    fields.tm_wday = static_cast<int>(chrono::weekday(day).c_encoding());
    fields.tm_yday = static_cast<int>((day - chrono::sys_days(date.year() / chrono::January / 1)).count());
    return fields;
}

std::string FormatFields(const std::tm& fields, const char* format) {
    char buffer[128] = {};
    const std::size_t length = std::strftime(buffer, sizeof buffer, format, &fields);
    return std::string(buffer, length);
}

std::int32_t SecondsNow() noexcept {
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t now = std::time(nullptr);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(now, Limits::min(), Limits::max()));
}

}  // namespace Quill::Text
