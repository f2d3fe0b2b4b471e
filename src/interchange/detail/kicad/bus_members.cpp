#include "interchange/detail/kicad/bus_members.h"

#include <algorithm>
#include <optional>

#include "text/ascii.h"
#include "text/number.h"

namespace Quill::Interchange::Kicad {

namespace {

struct Indexed {
    std::string_view stem;
    std::uint64_t first = 0;
    std::uint64_t last = 0;
};

std::optional<std::uint64_t> ReadDigits(std::string_view text) {
    if (text.empty() || !std::all_of(text.begin(), text.end(), Text::IsDigit)) return std::nullopt;
    const auto number = Text::ParseUInt64(text);
    return number.Ok() ? std::optional(number.value) : std::nullopt;
}

// Takes apart "D[3]" and "D[7:0]"; nothing for other texts.
std::optional<Indexed> ReadIndexed(std::string_view text) {
    const std::size_t open = text.rfind('[');
    if (open == std::string_view::npos || text.back() != ']') return std::nullopt;
    const std::string_view inside = text.substr(open + 1, text.size() - open - 2);
    const std::size_t colon = inside.find(':');
    const auto first = ReadDigits(inside.substr(0, colon));
    const auto last = colon == std::string_view::npos ? first : ReadDigits(inside.substr(colon + 1));
    if (!first || !last) return std::nullopt;
    return Indexed{text.substr(0, open), *first, *last};
}

}  // namespace

void BusMembers::AddBus(std::string_view text, bool global, std::uint32_t bus) {
    while (!text.empty()) {
        const std::string_view item = text.substr(0, text.find(','));
        text.remove_prefix(std::min(item.size() + 1, text.size()));
        const auto indexed = ReadIndexed(item);
        if (indexed && indexed->first != indexed->last) {
            const auto [lowest, highest] = std::minmax(indexed->first, indexed->last);
            m_ranges[{global, std::string(indexed->stem)}].push_back({lowest, highest, bus});
        } else {
            m_names[{global, std::string(item)}].push_back(bus);
        }
    }
}

void BusMembers::FindBuses(std::string_view net, bool global, std::vector<std::uint32_t>& buses) const {
    if (const auto named = m_names.find({global, std::string(net)}); named != m_names.end()) {
        buses.insert(buses.end(), named->second.begin(), named->second.end());
    }
    const auto indexed = ReadIndexed(net);
    if (!indexed || indexed->first != indexed->last) return;
    const auto ranges = m_ranges.find({global, std::string(indexed->stem)});
    if (ranges == m_ranges.end()) return;
    for (const Range& range : ranges->second) {
        if (range.lowest <= indexed->first && indexed->first <= range.highest) buses.push_back(range.bus);
    }
}

}  // namespace Quill::Interchange::Kicad
