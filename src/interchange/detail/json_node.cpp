#include "interchange/detail/json_node.h"

#include <algorithm>

#include "interchange/index_text.h"
#include "text/ascii.h"
#include "text/number.h"

namespace Quill::Interchange {

namespace {

std::string FromHex(const Node& node) {
    if (!node.value.is_string()) Fail(node.place, "is not a text of hexadecimal digits");
    const std::string& digits = node.value.get_ref<const std::string&>();
    if (digits.size() % 2 != 0) Fail(node.place, "has an odd number of hexadecimal digits");
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const int high = Text::HexDigit(digits[i]);
        const int low = Text::HexDigit(digits[i + 1]);
        if (high < 0 || low < 0) Fail(node.place, "is not a text of hexadecimal digits");
        bytes += static_cast<char>(high * 16 + low);
    }
    return bytes;
}

}  // namespace

std::string Place::Pointer() const {
    std::vector<const Place*> steps;
    for (const Place* step = this; step->m_above != nullptr; step = step->m_above)
        steps.push_back(step);
    std::string pointer;
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
        pointer += '/';
        const Place& place = **step;
        if (place.m_member.data() == nullptr) {
            Text::AppendNumber(pointer, place.m_position);
            continue;
        }
        for (const char c : place.m_member) {
            if (c == '~') {
                pointer += "~0";
            } else if (c == '/') {
                pointer += "~1";
            } else {
                pointer += c;
            }
        }
    }
    return pointer;
}

void Fail(const Place& place, std::string reason) {
    throw DesignJsonFault{place.Pointer(), std::move(reason)};
}

std::int64_t ReadWhole(const Node& node, std::int64_t smallest, std::int64_t largest) {
    const Json& value = node.value;
    // The parser takes what is not negative as unsigned, and as a fraction what fits neither.
    const bool fits = value.is_number_unsigned()
                          ? value.get_ref<const Json::number_unsigned_t&>() <= static_cast<std::uint64_t>(largest)
                          : value.is_number_integer() && value.get_ref<const Json::number_integer_t&>() >= smallest;
    if (!fits)
        Fail(node.place, "is not a whole number from " + Text::Render(smallest) + " to " + Text::Render(largest));
    return value.get<std::int64_t>();
}

bool ReadTruth(const Node& node) {
    if (!node.value.is_boolean()) Fail(node.place, "is neither true nor false");
    return node.value.get<bool>();
}

Orin::String ReadText(const Node& node) {
    std::string bytes;
    if (node.value.is_string()) {
        bytes = node.value.get_ref<const std::string&>();
    } else if (node.value.is_object()) {
        const Members members(node, {"hex"});
        members.Require("hex", [&](const Node& hex) { bytes = FromHex(hex); });
    } else {
        Fail(node.place, "is not a text");
    }
    if (bytes.find('\0') != bytes.npos) Fail(node.place, "holds the character U+0000");
    return Orin::String(std::string_view(bytes));
}

Orin::Index ReadIndex(const Node& node, bool free) {
    std::optional<Orin::Index> index;
    if (node.value.is_string()) index = ParseIndex(node.value.get_ref<const std::string&>());
    if (!index) Fail(node.place, "is not an index such as \"comp:12\"");
    if (index->IsEmpty() && !free) Fail(node.place, "is the empty index");
    return *index;
}

Orin::Point ReadPoint(const Node& node) {
    ExpectLength(node, 2, 2);
    Orin::Point point;
    std::int64_t* const parts[] = {&point.x, &point.y};
    std::size_t part = 0;
    ReadEach(node, [&](const Node& number) { *parts[part++] = ReadNumber<std::int64_t>(number); });
    return point;
}

void ExpectLength(const Node& node, std::size_t smallest, std::size_t largest) {
    if (!node.value.is_array()) Fail(node.place, "is not a list");
    if (node.value.size() >= smallest && node.value.size() <= largest) return;
    std::string reason = "is not a list of " + Text::Render(smallest);
    if (largest != smallest) reason += " to " + Text::Render(largest);
    Fail(node.place, reason + " elements");
}

Members::Members(const Node& node, std::initializer_list<std::string_view> known) : m_node(node) {
    if (!node.value.is_object()) Fail(node.place, "is not an object");
    for (const auto& [name, value] : node.value.get_ref<const Json::object_t&>())
        if (std::find(known.begin(), known.end(), name) == known.end())
            Fail(node.place.Member(name), "is not a member that belongs here");
}

void Members::Into(const char* name, Indexes& indexes) const {
    With(name,
         [&](const Node& list) { ReadEach(list, [&](const Node& index) { indexes.push_back(ReadIndex(index)); }); });
}

}  // namespace Quill::Interchange
