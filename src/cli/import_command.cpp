// quill import: a design out of the files of another program.
#include "cli/command.h"
#include "cli/design_lookup.h"
#include "cli/open_design.h"
#include "cli/whole_file.h"
#include "interchange/design_json.h"

namespace Quill::Cli {

namespace {

struct Options {
    std::string root;
    std::string target;
    Interchange::KicadOptions kicad;
};

ExitCode Run(const Options& options) {
    if (IsSchematicPath(options.target))
        throw CommandError(options.target + ": A schematic is not overwritten with a design file");
    const OpenDesign design = ImportDesign(options.root, options.kicad);
    std::string text;
    Need(Interchange::WriteDesignJson(design.snapshot, Orin::String(std::string_view(design.name)), text));
    ReplaceFile(options.target, text);
    return Done;
}

}  // namespace

void AddImportCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App& command =
        line.Add("import", "Write a KiCad schematic down as a design file",
                 "Warnings go to standard error. When the schematic cannot be imported, or the file not be written,\n"
                 "a file that is there stays as it was.\n"
                 "\n"
                 "Examples:\n"
                 "  quill import board.kicad_sch -o board.json\n"
                 "  quill import board.kicad_sch -o board.json --merge-flat-sheets --allow-missing",
                 [options] { return Run(*options); });
    command.add_option("ROOT", options->root, "root schematic (.kicad_sch)")->required();
    command.add_option("-o,--output", options->target, "design file to write (JSON)")->required();
    command.add_flag("--merge-flat-sheets", options->kicad.mergeFlatSheets,
                     "make child sheets without pins that are used once further sheets of their parent's block");
    command.add_flag("--allow-missing", options->kicad.allowMissing,
                     "go on without the files of child sheets that are missing");
}

}  // namespace Quill::Cli
