// quill import: a design out of the files of another program.
#include "cli/command.h"
#include "cli/open_design.h"

namespace Quill::Cli {

namespace {

struct ImportOptions {
    std::string root;
    std::string target;
    Interchange::KicadOptions kicad;
};

ExitCode RunImport(const ImportOptions& options) {
    if (IsSchematicPath(options.target))
        throw CommandError(options.target + ": A schematic is not overwritten with a design file");
    WriteDesign(options.target, ImportDesign(options.root, options.kicad));
    return Done;
}

}  // namespace

void AddImportCommand(CommandLine& line) {
    const auto options = std::make_shared<ImportOptions>();
    const Syntax command =
        line.Add("import", "Write a KiCad schematic down as a design file",
                 "Warnings go to standard error. When the schematic cannot be imported, or the file not be written,\n"
                 "a file that is there stays as it was.\n"
                 "\n"
                 "Examples:\n"
                 "  quill import board.kicad_sch -o board.qdb\n"
                 "  quill import board.kicad_sch -o board.json --merge-flat-sheets --allow-missing",
                 [options] { return RunImport(*options); });
    command.Option("ROOT", options->root, "root schematic (.kicad_sch)").Required();
    command.Option("-o,--output", options->target, "file to write: JSON, or a design file when it ends in .qdb")
        .Required();
    command.Flag("--merge-flat-sheets", options->kicad.mergeFlatSheets,
                 "make child sheets without pins that are used once further sheets of their parent's block");
    command.Flag("--allow-missing", options->kicad.allowMissing,
                 "go on without the files of child sheets that are missing");
}

}  // namespace Quill::Cli
