// One page of a design: one sheet of a block, as it occurs at one place in the hierarchy.
#pragma once

#include <compare>
#include <string>

#include "orin/index.h"

namespace Quill {

// A value. The two indexes are the page's identity; the name takes no part in order and equality. An empty one means
// "no page", and as a parent the design itself.
struct PageID {
    Orin::Index path;   // the place of the block occurrence that owns the page
    Orin::Index group;  // the sheet in that block
    std::string name;   // hierarchical name of the place, "\" and the sheet's name; at the root the sheet's name alone

    bool IsEmpty() const noexcept { return path.IsEmpty() && group.IsEmpty(); }

    friend bool operator==(const PageID& a, const PageID& b) noexcept { return a.path == b.path && a.group == b.group; }
    friend std::strong_ordering operator<=>(const PageID& a, const PageID& b) noexcept {
        return a.path == b.path ? a.group <=> b.group : a.path <=> b.path;
    }
};

}  // namespace Quill
