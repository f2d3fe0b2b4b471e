// quill sheets down: a sheet one place down in the order of its block.
#include "cli/command.h"
#include "cli/sheet_order.h"

namespace Quill::Cli {

namespace {

struct Options {
    SheetEditOptions edit;
    std::string sheet;
};

ExitCode Run(const Options& options) {
    return EditOrder(options.edit, [&options](SheetRange& range) { range.MoveDown(SheetIn(range, options.sheet)); });
}

}  // namespace

void AddSheetsDownCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App& command = line.Add("sheets down", "Move a sheet one place towards the last",
                                 "Examples:\n"
                                 "  quill sheets down board.json controller TEST",
                                 [options] { return Run(*options); });
    AddSheetEditOptions(command, options->edit);
    command.add_option("SHEET", options->sheet, "name of the sheet")->required();
}

}  // namespace Quill::Cli
