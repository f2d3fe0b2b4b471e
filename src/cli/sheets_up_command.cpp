// quill sheets up: a sheet one place up in the order of its block.
#include "cli/command.h"
#include "cli/sheet_order.h"

namespace Quill::Cli {

void AddSheetsUpCommand(CommandLine& line) {
    const auto options = std::make_shared<SheetStepOptions>();
    const Syntax command = line.Add("sheets up", "Move a sheet one place towards the first",
                                    "Examples:\n"
                                    "  quill sheets up board.json controller TEST",
                                    [options] { return StepSheet(*options, &SheetRange::MoveUp); });
    AddSheetStepOptions(command, *options);
}

}  // namespace Quill::Cli
