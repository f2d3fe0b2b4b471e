// Which files become the sheets of which blocks.
#pragma once

#include <string>
#include <vector>

#include "interchange/detail/kicad/hierarchy.h"

namespace Quill::Interchange::Kicad {

struct PlannedPage {
    FileId file = 0;
    std::string name;
};

struct PlannedBlock {
    std::vector<PlannedPage> pages;  // in their order; the first bears the block's name
};

struct BlockPlan {
    std::vector<PlannedBlock> blocks;  // in the order of the files
    std::vector<std::size_t> blockOf;  // by file

    // Whether the sheet symbol stands for a further page of the block that it is drawn in.
    bool IsMerged(const Hierarchy& hierarchy, const SheetStep& step) const;
};

// Each file is a block of its own; with `mergeFlatSheets` one whose only sheet symbol has no pins joins the block of
// that symbol.
BlockPlan PlanBlocks(const Hierarchy& hierarchy, const PageNumbers& numbers, bool mergeFlatSheets);

}  // namespace Quill::Interchange::Kicad
