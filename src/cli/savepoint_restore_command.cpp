// quill savepoint restore: make a design what a save point of it holds.
#include "cli/command.h"
#include "cli/design_lookup.h"
#include "cli/save_points.h"
#include "designdb/editor.h"

namespace Quill::Cli {

namespace {

ExitCode RunSavepointRestore(const SavePointOptions& options) {
    const OpenDesign design = OpenDesignFile(options.edit.design, !options.edit.dryRun);
    const SavePoint point = FindSavePoint(design, options.name);
    return EditDesign(options.edit, design, [&point](const OpenDesign& restored) -> Changes {
        Orin::DesignDb::Editor editor;
        Need(Orin::DesignDb::Editor::Open(editor, restored.snapshot));
        Need(editor.RestoreSavePoint(point.name.c_str()));
        return {{"The design is again as in " + point.Description()}, AsJson(point)};
    });
}

}  // namespace

void AddSavepointRestoreCommand(CommandLine& line) {
    const auto options = std::make_shared<SavePointOptions>();
    const Syntax command =
        line.Add("savepoint restore", "Make a design what one of its save points holds",
                 "What the design is now is lost unless a save point keeps it. All save points stay.\n"
                 "\n"
                 "Examples:\n"
                 "  quill savepoint restore board.qdb routed",
                 [options] { return RunSavepointRestore(*options); });
    AddSavePointOptions(command, *options);
}

}  // namespace Quill::Cli
