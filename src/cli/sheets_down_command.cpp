// quill sheets down: a sheet one place down in the order of its block.
#include "cli/command.h"
#include "cli/sheet_order.h"

namespace Quill::Cli {

void AddSheetsDownCommand(CommandLine& line) {
    const auto options = std::make_shared<SheetStepOptions>();
    const Syntax command = line.Add("sheets down", "Move a sheet one place towards the last",
                                    "Examples:\n"
                                    "  quill sheets down board.json controller TEST",
                                    [options] { return StepSheet(*options, &SheetRange::MoveDown); });
    AddSheetStepOptions(command, *options);
}

}  // namespace Quill::Cli
