// What the commands on a block's sheets share.
#pragma once

#include <string>
#include <vector>

#include "cli/edit_design.h"
#include "sheets/sheet_range.h"

namespace Quill::Cli {

struct SheetEditOptions {
    EditOptions edit;
    std::string block;
};

// Adds DESIGN, BLOCK, --dry-run and --json.
void AddSheetEditOptions(const Syntax& command, SheetEditOptions& options);

// The sheets of a block in their order. Throws a CommandError when there is no such block, or several.
SheetRange SheetsOf(const OpenDesign& design, const std::string& block);

// The sheet of that name. Throws a CommandError when there is none, or several.
SheetRange::Sheet SheetIn(const SheetRange& range, const std::string& name);
std::vector<SheetRange::Sheet> SheetsIn(const SheetRange& range, const std::vector<std::string>& names);

// "The sheets of BLOCK are in this order: 1, 3, 2".
std::string OrderSentence(const SheetRange& range, const std::string& block);

struct SheetStepOptions {
    SheetEditOptions edit;
    std::string sheet;
};

// Adds DESIGN, BLOCK, SHEET, --dry-run and --json.
void AddSheetStepOptions(const Syntax& command, SheetStepOptions& options);

// Lets `change` work on the sheets of the block; what it does to their order is the answer.
ExitCode EditOrder(const SheetEditOptions& options, const std::function<void(SheetRange&)>& change);

// Moves the sheet by one place, up or down as `step` says.
ExitCode StepSheet(const SheetStepOptions& options, bool (SheetRange::*step)(SheetRange::Sheet));

}  // namespace Quill::Cli
