// Everything that is drawn on a sheet, with its ids.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"
#include "orin/orin.h"

namespace Quill::Cli {

// What the commands that look at one sheet are asked.
struct SheetOptions {
    std::string design;
    std::string block;
    std::string sheet;
    bool json = false;
};

// Adds DESIGN, BLOCK, SHEET and --json.
void AddSheetOptions(const Syntax& command, SheetOptions& options);

struct Graphic {
    const char* kind;
    Orin::ItemId id;                                        // as drawn: 0 and 0xFFFFFFFF mean none
    std::optional<Orin::ItemId> attributeId = {};           // of a drawn attribute
    Orin::Point at = {};                                    // where it stands, or begins
    std::string text = {};                                  // of a text
    std::vector<Orin::ListSegmentsQuillJoint> joints = {};  // of a net or bus
    std::vector<Orin::ListSegmentsQuillSegment> segments = {};
};

// The graphics of the sheet in the order of designdata/block_orin_quill_data_visitor.h. Throws the failed Orin::Result
// when they cannot be read.
std::vector<Graphic> GraphicsOf(const Orin::ContainerT<const Orin::IBlock>& block,
                                const Orin::ContainerT<const Orin::IGroup>& sheet);

// Whether an id is one.
constexpr bool IsId(Orin::ItemId id) noexcept {
    return id != 0 && id != 0xFFFFFFFF;
}

}  // namespace Quill::Cli
