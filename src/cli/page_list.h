// The pages of a design as commands name and show them.
#pragma once

#include <string>
#include <vector>

#include "cli/open_design.h"
#include "pages/page_id.h"
#include "pages/page_traverser.h"

namespace Quill::Cli {

struct PageEntry {
    PageID id;
    std::string number;  // empty when the page has none
    std::string block;
    std::string sheet;
    std::vector<std::string> way;  // labels of the hierarchical components that lead to the page, root first
    std::string printOrder;        // as it stands on the page; empty when there is none
    bool excluded = false;         // by its own sheet, or by a page above

    // "page NAME (sheet SHEET of BLOCK at WAY)".
    std::string Description() const;
};

struct PageList {
    // Every page of the walk. Excluded ones stand at their places in the walk; numbered by print order, pages without a
    // usable one follow the others in the order of the walk.
    std::vector<PageEntry> pages;
    // Those that the child order does not come to, in the order of the design.
    std::vector<PageEntry> dropped;
};

// Walks the configuration called `config` (open_design.h). Throws a CommandError or the failed Orin::Result.
PageList ListPages(const OpenDesign& design, const std::string& config, EAlgorithm order, ECompAlgorithm children);

// The page with that number, else the only one with that name. Throws a CommandError when there is none, or several.
const PageEntry& FindPage(const PageList& list, const std::string& numberOrName);

}  // namespace Quill::Cli
