#include "cli/event_record.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/event_fields.h"
#include "cli/whole_file.h"
#include "text/ascii.h"
#include "text/utf8.h"

namespace Quill::Cli {

namespace {

constexpr const char* Format = "quill-events";
constexpr int Version = 1;

// JSON holds no bytes that are not UTF-8: such a text becomes {"hex": "4D6FFC"}.
EventJson WithoutBytes(const EventJson& arguments) {
    EventJson kept = arguments;
    for (EventJson& value : kept) {
        if (!value.is_string() || Text::IsUtf8(value.get_ref<const std::string&>())) continue;
        std::string digits;
        for (const char c : value.get_ref<const std::string&>())
            digits += fmt::format("{:02X}", static_cast<unsigned char>(c));
        value = {{"hex", digits}};
    }
    return kept;
}

EventJson WithBytes(const EventJson& kept) {
    if (!kept.is_object()) throw CommandError("arguments are no object");
    EventJson arguments = kept;
    for (EventJson& value : arguments) {
        if (!value.is_object() || value.size() != 1 || !value.contains("hex")) continue;
        std::string digits;
        ReadField(value["hex"], digits);
        std::string bytes;
        for (std::size_t i = 0; i < digits.size(); i += 2) {
            const int high = Text::HexDigit(digits[i]);
            const int low = i + 1 < digits.size() ? Text::HexDigit(digits[i + 1]) : -1;
            if (high < 0 || low < 0) throw CommandError(digits + " is not two hexadecimal digits a byte");
            bytes += static_cast<char>(high * 16 + low);
        }
        value = bytes;
    }
    return arguments;
}

// A line of a record. Deeper ones than any that is written are refused, since what handles JSON goes down with it.
EventJson ParseLine(std::string_view text) {
    constexpr int Deepest = 8;
    return EventJson::parse(text, [](int depth, EventJson::parse_event_t, const EventJson&) {
        if (depth > Deepest) throw CommandError("Is nested too deep");
        return true;
    });
}

void CheckHeading(const EventJson& heading) {
    std::string format;
    int version = 0;
    ReadField(Member(heading, "format"), format);
    ReadField(Member(heading, "version"), version);
    if (format != Format) throw CommandError("This is no record of events");
    if (version != Version) throw CommandError(fmt::format("Version {} of records is not known", version));
}

HeardEvent FromJson(const EventJson& json) {
    HeardEvent heard;
    std::uint32_t line = 0;
    std::int64_t waited = 0;
    ReadField(Member(json, "line"), line);
    ReadField(Member(json, "waited"), waited);
    ReadField(Member(json, "observer"), heard.event.observer);
    ReadField(Member(json, "event"), heard.event.name);
    heard.event.arguments = WithBytes(Member(json, "arguments"));
    heard.line = line;
    heard.waited = std::chrono::microseconds(waited);
    return heard;
}

}  // namespace

EventJson AsJson(const HeardEvent& event, bool withTimes) {
    EventJson json{{"line", event.line}};
    if (withTimes) json["waited"] = event.waited.count();
    json["observer"] = event.event.observer;
    json["event"] = event.event.name;
    json["arguments"] = event.event.arguments;
    return json;
}

void WriteRecord(const std::string& path, const std::string& design, const std::vector<HeardEvent>& events) {
    const auto line = [](const EventJson& json) {
        return json.dump(-1, ' ', false, EventJson::error_handler_t::replace) + '\n';
    };
    std::string text = line({{"format", Format}, {"version", Version}, {"design", design}});
    for (const HeardEvent& event : events) {
        EventJson json = AsJson(event, true);
        json["arguments"] = WithoutBytes(event.event.arguments);
        text += line(json);
    }
    ReplaceFile(path, text);
}

void ReadRecord(const std::string& path, const std::function<void(const HeardEvent&)>& next) {
    const std::string text = ReadWholeFile(path);
    std::string_view rest = text;
    for (std::size_t number = 1; !rest.empty() || number == 1; ++number) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        try {
            const EventJson json = ParseLine(rest.substr(0, end));
            if (number == 1) {
                CheckHeading(json);
            } else {
                next(FromJson(json));
            }
        } catch (const nlohmann::json::exception&) {
            throw CommandError(fmt::format("{}:{}: This is no JSON", path, number));
        } catch (const CommandError& error) {
            throw CommandError(fmt::format("{}:{}: {}", path, number, error.what()));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

}  // namespace Quill::Cli
