// quill export: a design in another form.
#include "cli/command.h"
#include "cli/open_design.h"

namespace Quill::Cli {

namespace {

struct ExportOptions {
    std::string design;
    std::string target;
};

ExitCode RunExport(const ExportOptions& options) {
    WriteDesign(options.target, ReadDesign(options.design));
    return Done;
}

}  // namespace

void AddExportCommand(CommandLine& line) {
    const auto options = std::make_shared<ExportOptions>();
    const Syntax command =
        line.Add("export", "Write a design in another form",
                 "A design file (.qdb) that is there is left alone; a JSON file is replaced. Save points\n"
                 "are in design files only and are not written.\n"
                 "\n"
                 "Examples:\n"
                 "  quill export board.qdb -o board.json\n"
                 "  quill export examples/vibration-recorder.json -o recorder.qdb",
                 [options] { return RunExport(*options); });
    AddDesignArgument(command, options->design);
    command.Option("-o,--output", options->target, "file to write: JSON, or a design file when it ends in .qdb")
        .Required();
}

}  // namespace Quill::Cli
