// quill sheets move: sheets to another place in the order of their block.
#include <optional>

#include "cli/command.h"
#include "cli/sheet_order.h"

namespace Quill::Cli {

namespace {

struct SheetsMoveOptions {
    SheetEditOptions edit;
    std::vector<std::string> sheets;
    std::optional<std::string> before;
    std::optional<std::string> after;
};

ExitCode RunSheetsMove(const SheetsMoveOptions& options) {
    return EditOrder(options.edit, [&options](SheetRange& range) {
        const std::vector<SheetRange::Sheet> sheets = SheetsIn(range, options.sheets);
        const std::string& name = options.before ? *options.before : *options.after;
        const SheetRange::Sheet target = SheetIn(range, name);
        const bool after = !options.before;
        if (!range.CanMoveTo(sheets, target, after))
            throw CommandError("Sheet " + name + " cannot be moved to its own side");
        range.MoveTo(sheets, target, after);
    });
}

}  // namespace

void AddSheetsMoveCommand(CommandLine& line) {
    const auto options = std::make_shared<SheetsMoveOptions>();
    const Syntax command = line.Add("sheets move", "Move sheets within the order of their block",
                                    "They keep the order that they have among themselves.\n"
                                    "\n"
                                    "Examples:\n"
                                    "  quill sheets move board.json controller 4 5 --before 2\n"
                                    "  quill sheets move board.json controller TEST --after 1 --dry-run",
                                    [options] { return RunSheetsMove(*options); });
    AddSheetEditOptions(command, options->edit);
    command.Option("SHEET", options->sheets, "names of the sheets").Required();
    const Syntax side = command.OneOfGroup("place");
    side.Option("--before", options->before, "directly before this sheet");
    side.Option("--after", options->after, "directly after this sheet");
}

}  // namespace Quill::Cli
