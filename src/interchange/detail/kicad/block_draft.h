// A block while it is built: its model, and what its nets will be made from.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "interchange/detail/design_model.h"
#include "interchange/detail/kicad/connectivity.h"
#include "interchange/detail/kicad/definitions.h"

namespace Quill::Interchange::Kicad {

// A label as it connects. Those that are components, and pins of sheet symbols, have a pin.
struct DraftLabel {
    std::size_t page = 0;
    std::string text;  // in the grammar of designs
    std::string_view source;
    Orin::Point at;
    Orin::Index pin;
    const Label* local = nullptr;  // a local label, which its net draws
    bool busPin = false;           // a pin of a sheet symbol that is called like a bus
};

struct DraftSegment {
    std::size_t page = 0;
    Orin::Point from;
    Orin::Point to;
    const Wire* wire = nullptr;
};

struct DraftEntry {
    std::size_t page = 0;
    std::size_t comp = 0;  // position of the ripper among the block's components
    Orin::Point from;
    Orin::Point to;
};

inline constexpr DefinitionId NoDefinition = static_cast<DefinitionId>(-1);

struct DraftPin {
    std::size_t page = 0;
    Orin::Point at;
    Orin::Index pin;
};

struct DraftPoint {
    std::size_t page = 0;
    Orin::Point at;
};

// The ids of the geometry are positions in the lists here.
struct BlockDraft {
    BlockModel model;
    std::vector<DefinitionId> definitions;  // by component; NoDefinition for those without
    std::vector<SheetGeometry> geometry;    // by page
    std::vector<DraftSegment> segments;
    std::vector<DraftPoint> junctions;
    std::vector<DraftEntry> entries;
    std::vector<DraftLabel> labels;
    std::vector<DraftPin> pins;
};

// Makes the nets and buses of the block, connects the pins and draws all.
void BuildNets(BlockDraft& draft, IndexCounter& indexes);

}  // namespace Quill::Interchange::Kicad
