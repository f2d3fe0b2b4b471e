// Runs of neighbouring nets, from which bus labels are written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Quill::BusContents::detail {

constexpr bool IsOpening(char c) noexcept {
    return c == '[' || c == '(';
}
constexpr bool IsClosing(char c) noexcept {
    return c == ']' || c == ')';
}

// What an empty number text counts as.
inline constexpr std::int32_t NoNumber = -1;

// One net, or one number of a net that has several.
struct StemNumber {
    std::string_view stem;
    std::int32_t number = NoNumber;
    bool numbered = false;  // the number was written; a written "-1" is not an empty number text
};

// Neighbours that are written as one item.
struct Run {
    std::string_view stem;
    std::int32_t first = NoNumber;
    std::int32_t last = NoNumber;
    bool numbered = false;
    std::size_t count = 1;
};

enum class Repeats {
    Apart,     // nets without a number stand alone
    Together,  // equal nets without a number make one run
};

// Collects nets in their order; the texts that they come from must outlive it.
class LabelRuns {
public:
    explicit LabelRuns(Repeats repeats) : m_repeats(repeats) {}

    void Add(const StemNumber& net);

    // Adds `net` when it is the stem of the last numbered run and one plain index, "[12]" or "(12)", as most nets of a
    // bus are: it then reads the same in every form of label. False, with nothing added, for any other net.
    bool AddLikeLast(std::string_view net);

    const std::vector<Run>& Runs() const noexcept { return m_runs; }

private:
    bool Grows(const Run& run, const StemNumber& net) const;

    Repeats m_repeats;
    std::vector<Run> m_runs;
    std::string_view m_lastNet;  // the net that was added last, when that was done by AddLikeLast
};

enum class Signs { Refused, Accepted };

// Adds a net for each number of `index`, what follows the stem in a net name: everything up to a digit is skipped, and
// after the digits one closing bracket. With Signs::Accepted a "-" directly before the digits belongs to them. An index
// part without digits adds the net once, without a number. False when characters are left after the last number.
bool AddIndexPart(LabelRuns& runs, std::string_view stem, std::string_view index, Signs signs);

}  // namespace Quill::BusContents::detail
