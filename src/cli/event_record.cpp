#include "cli/event_record.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>

#include "cli/command.h"
#include "cli/event_fields.h"
#include "cli/json.h"
#include "cli/whole_file.h"
#include "text/ascii.h"
#include "text/utf8.h"

namespace Quill::Cli {

namespace {

constexpr const char* Format = "quill-events";
constexpr int Version = 1;
constexpr int Deepest = 8;  // more than any line that is written

// JSON holds no bytes that are not UTF-8: such a text becomes {"hex": "4D6FFC"}.
Json WithoutBytes(const Json& arguments) {
    Json kept = arguments;
    for (Json::Member& member : *kept.If<Json::Object>()) {
        const auto* const text = member.value.If<std::string>();
        if (text == nullptr || Text::IsUtf8(*text)) continue;
        std::string digits;
        for (const char c : *text)
            digits += fmt::format("{:02X}", static_cast<unsigned char>(c));
        member.value = {{"hex", digits}};
    }
    return kept;
}

Json WithBytes(const Json& kept) {
    Json arguments = kept;
    auto* const members = arguments.If<Json::Object>();
    if (members == nullptr) throw CommandError("arguments are no object");
    for (Json::Member& member : *members) {
        const Json* const hex = member.value.Find("hex");
        if (hex == nullptr || member.value.If<Json::Object>()->size() != 1) continue;
        std::string digits;
        ReadField(*hex, digits);
        std::string bytes;
        for (std::size_t i = 0; i < digits.size(); i += 2) {
            const int high = Text::HexDigit(digits[i]);
            const int low = i + 1 < digits.size() ? Text::HexDigit(digits[i + 1]) : -1;
            if (high < 0 || low < 0) throw CommandError(digits + " is not two hexadecimal digits a byte");
            bytes += static_cast<char>(high * 16 + low);
        }
        member.value = bytes;
    }
    return arguments;
}

void CheckHeading(const Json& heading) {
    std::string format;
    int version = 0;
    ReadField(Member(heading, "format"), format);
    ReadField(Member(heading, "version"), version);
    if (format != Format) throw CommandError("This is no record of events");
    if (version != Version) throw CommandError(fmt::format("Version {} of records is not known", version));
}

Json AsJson(const HeardEvent& event, bool withTimes, const Json& arguments) {
    Json json{{"line", event.line}};
    if (withTimes) json.Add("waited", event.waited.count());
    json.AddMembersOf({{"observer", event.event.observer}, {"event", event.event.name}, {"arguments", arguments}});
    return json;
}

HeardEvent FromJson(const Json& json) {
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

Json AsJson(const HeardEvent& event, bool withTimes) {
    return AsJson(event, withTimes, event.event.arguments);
}

void WriteRecord(const std::string& path, const std::string& design, const std::vector<HeardEvent>& events) {
    std::string text = Json{{"format", Format}, {"version", Version}, {"design", design}}.Text() + '\n';
    for (const HeardEvent& event : events)
        text += AsJson(event, true, WithoutBytes(event.event.arguments)).Text() + '\n';
    ReplaceFile(path, text);
}

void ReadRecord(const std::string& path, const std::function<void(const HeardEvent&)>& next) {
    const std::string text = ReadWholeFile(path);
    std::string_view rest = text;
    for (std::size_t number = 1; !rest.empty() || number == 1; ++number) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        try {
            const Json json = Json::Parse(rest.substr(0, end), Deepest);
            if (number == 1) {
                CheckHeading(json);
            } else {
                next(FromJson(json));
            }
        } catch (const CommandError& error) {
            throw CommandError(fmt::format("{}:{}: {}", path, number, error.what()));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

}  // namespace Quill::Cli
