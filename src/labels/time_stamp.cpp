#include "labels/time_stamp.h"

#include <string_view>
#include <tuple>

#include "properties/property_mangler.h"
#include "text/calendar.h"
#include "text/number.h"

namespace Quill::Utils {

namespace {

constexpr const char* DefaultName = "__BlkDate";
constexpr Orin::EAttributeType SymbolFamily = Orin::EAttributeType::System;

Orin::String StoredName(const char* name) {
    return CPropertyMangler::Mangle(name, DataModel::PropertyType::Internal);
}

void AppendTwoDigits(std::string& text, int value) {
    if (value < 10) text += '0';
    Text::AppendNumber(text, value);
}

struct Fields {
    std::int64_t year = 0;  // since 1900
    std::int64_t month = 0;
    std::int64_t day = 0;
    std::int64_t hour = 0;
    std::int64_t minute = 0;
    std::int64_t second = 0;

    auto Order() const { return std::tie(year, month, day, hour, minute, second); }
};

Fields TakeApartRaw(std::string_view stamp) {
    const std::tm utc = Text::UtcFields(Text::ParseInt32(stamp).value);
    return {utc.tm_year, utc.tm_mon, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec};
}

// Cuts the text at one separator after the other. When a separator does not occur any more, its field runs to the end
// and the next one begins at the front of the text again; a piece without leading digits is 0. So damaged stamps have
// always been ordered.
Fields TakeApartFormatted(std::string_view stamp) {
    std::string text(stamp);
    text += '.';  // the separator behind the year
    std::size_t position = 0;
    const auto next = [&](char separator) -> std::int64_t {
        const std::size_t end = text.find(separator, position);
        const std::string_view piece = std::string_view(text).substr(position, end - position);
        position = end == std::string::npos ? 0 : end + 1;
        return Text::ParseInt32(piece).value;
    };
    Fields fields;
    fields.hour = next(':');
    fields.minute = next(':');
    fields.second = next('_');
    fields.month = next('-');
    fields.day = next('-');
    fields.year = next('.') + 100;
    return fields;
}

Fields TakeApart(const char* stamp) {
    const std::string_view text = stamp != nullptr ? std::string_view(stamp) : std::string_view();
    if (text.empty()) return {};
    return text.find(':') == std::string_view::npos ? TakeApartRaw(text) : TakeApartFormatted(text);
}

bool IsEmpty(const char* stamp) {
    return stamp == nullptr || *stamp == '\0';
}

}  // namespace

std::string time_stamp::current(mode m) {
    return at(Text::SecondsNow(), m);
}

std::string time_stamp::at(std::int32_t seconds, mode m) {
    if (m == raw) return Text::Render(seconds);
    const std::tm utc = Text::UtcFields(seconds);
    std::string stamp;
    Text::AppendNumber(stamp, utc.tm_hour);
    stamp += ':';
    AppendTwoDigits(stamp, utc.tm_min);
    stamp += ':';
    AppendTwoDigits(stamp, utc.tm_sec);
    stamp += '_';
    Text::AppendNumber(stamp, utc.tm_mon + 1);
    stamp += '-';
    Text::AppendNumber(stamp, utc.tm_mday);
    stamp += '-';
    AppendTwoDigits(stamp, utc.tm_year < 100 ? utc.tm_year : utc.tm_year - 100);
    return stamp;
}

bool time_stamp::is_raw(const std::string& stamp) {
    return !stamp.empty() && stamp.find(':') == std::string::npos;
}

bool time_stamp::read(const Orin::IGroup& group, const char* name, std::string& stamp) {
    Orin::String value;
    const bool found = static_cast<bool>(group.GetAttribute(StoredName(name), value));
    stamp = found ? value.View() : std::string_view();
    return true;
}

bool time_stamp::read(const Orin::IGroup& group, std::string& stamp) {
    return read(group, DefaultName, stamp);
}

bool time_stamp::read(const Orin::IComp& comp, std::string& stamp) {
    Orin::String value;
    const bool found = static_cast<bool>(comp.GetAttribute(StoredName(DefaultName), value, SymbolFamily));
    stamp = found ? value.View() : std::string_view();
    return true;
}

bool time_stamp::write(Orin::IGroup& group, const char* name, const char* stamp) {
    const Orin::String stored = StoredName(name);
    return static_cast<bool>(IsEmpty(stamp) ? group.RemoveAttribute(stored) : group.SetAttribute(stored, stamp));
}

bool time_stamp::write(Orin::IGroup& group, const char* stamp) {
    return write(group, DefaultName, stamp);
}

bool time_stamp::write(Orin::IComp& comp, const char* stamp) {
    const Orin::String stored = StoredName(DefaultName);
    return static_cast<bool>(IsEmpty(stamp) ? comp.RemoveAttribute(stored, SymbolFamily)
                                            : comp.SetAttribute(stored, stamp, SymbolFamily));
}

bool time_stamp::is_less(const char* a, const char* b) {
    return TakeApart(a).Order() < TakeApart(b).Order();
}

bool time_stamp::comparator_func(const std::string& a, const std::string& b) {
    return is_less(a.c_str(), b.c_str());
}

}  // namespace Quill::Utils
