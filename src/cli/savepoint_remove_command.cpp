// quill savepoint remove: a save point less.
#include "cli/command.h"
#include "cli/design_lookup.h"
#include "cli/save_points.h"

namespace Quill::Cli {

namespace {

ExitCode RunSavepointRemove(const SavePointOptions& options) {
    const OpenDesign design = OpenDesignFile(options.edit.design, !options.edit.dryRun);
    const SavePoint point = FindSavePoint(design, options.name);
    if (!options.edit.dryRun) Need(design.database.RemoveSnapshot(point.name.c_str()));
    return PrintChanges(options.edit, {{"The design no longer has " + point.Description()}, AsJson(point)});
}

}  // namespace

void AddSavepointRemoveCommand(CommandLine& line) {
    const auto options = std::make_shared<SavePointOptions>();
    const Syntax command = line.Add("savepoint remove", "Remove a save point; the design stays as it is",
                                    "Examples:\n"
                                    "  quill savepoint remove board.qdb routed",
                                    [options] { return RunSavepointRemove(*options); });
    AddSavePointOptions(command, *options);
}

}  // namespace Quill::Cli
