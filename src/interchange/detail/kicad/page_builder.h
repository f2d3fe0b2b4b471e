// From the items of one file to a page of a block.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "interchange/detail/kicad/block_draft.h"
#include "interchange/detail/kicad/label_writer.h"

namespace Quill::Interchange::Kicad {

// What all pages of a design share.
struct DesignParts {
    LabelWriter& labels;
    Definitions& definitions;
    IndexCounter& indexes;
    unsigned sheetSymbols = 0;  // how many there were so far
};

// What a sheet symbol stands for: the block of its file, nothing when the file is missing; or a further page of the
// block that it is drawn in.
struct SheetTarget {
    bool merged = false;
    const Orin::DesignDb::BlockSpec* block = nullptr;
};

// Where the components of a page stand in the block's model.
struct BuiltPage {
    std::optional<std::size_t> border;
    std::size_t firstSymbol = 0;      // the others follow in the order of the file
    std::vector<Orin::Index> sheets;  // by sheet symbol: its component; empty when merged
};

// The title block's entries that designs have.
void AddTitles(const Schematic& schematic, Attributes& attributes);

// Adds the page to the draft, whose block the label writer has started. `targets` are by sheet symbol.
BuiltPage BuildPage(SchematicFile& file, std::string_view name, bool numbered, const std::vector<SheetTarget>& targets,
                    BlockDraft& draft, DesignParts& parts);

}  // namespace Quill::Interchange::Kicad
