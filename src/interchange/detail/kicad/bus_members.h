// Which buses a net is a member of, by its name.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Quill::Interchange::Kicad {

// Texts are translated labels (label_text.h), for the net limiter "[]". Global buses have global members only, and
// local ones local members.
class BusMembers {
public:
    // `bus` is the caller's number for the bus. Costs the length of the text, whatever its ranges are.
    void AddBus(std::string_view text, bool global, std::uint32_t bus);

    // Appends the buses that have a member of that name; one that has it twice may come twice.
    void FindBuses(std::string_view net, bool global, std::vector<std::uint32_t>& buses) const;

private:
    struct Range {
        std::uint64_t lowest;
        std::uint64_t highest;
        std::uint32_t bus;
    };
    using Key = std::pair<bool, std::string>;  // global, and a stem or name

    std::map<Key, std::vector<Range>> m_ranges;
    std::map<Key, std::vector<std::uint32_t>> m_names;
};

}  // namespace Quill::Interchange::Kicad
