// A bus label in the form in which it is run through: a tree of names, index ranges and repetitions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

namespace Quill::BusContents::detail {

inline constexpr std::size_t NoNode = std::numeric_limits<std::size_t>::max();

// One bracketed index part of an item.
struct IndexGroup {
    std::string_view text;  // with its brackets; what a single index comes out as
    bool range = false;
    std::int64_t first = 0;
    std::int64_t last = 0;
};

struct LabelNode {
    std::size_t next = NoNode;   // the sibling that follows
    std::size_t child = NoNode;  // first node of the repeated list; NoNode for names
    std::uint64_t times = 1;     // how often the list is run through
    std::string_view text;       // a name, or what stands before its index groups
    std::size_t firstGroup = 0;  // in LabelProgram::groups
    std::size_t groupCount = 0;  // 0 for a name that comes out as it stands
};

// Views into the label that was compiled. Nodes that name no net are left out, and a list is repeated at least twice
// and never holds just another repetition. So running the tree costs a bounded number of steps per member on average,
// however deep the braces of the label are and however often they repeat nothing.
struct LabelProgram {
    std::vector<LabelNode> nodes;
    std::vector<IndexGroup> groups;
    std::size_t root = NoNode;  // first node of the outermost list
    std::uint64_t members = 0;  // saturates
    char open = '[';            // brackets in which indexes of ranges are written
    char close = ']';
};

// Reads `label`, which must outlive the result, in the brackets of `limiter`.
LabelProgram CompileBusLabel(std::string_view label, int limiter);

}  // namespace Quill::BusContents::detail
