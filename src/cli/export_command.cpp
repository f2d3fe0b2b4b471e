// quill export: a design in another form.
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <memory>
#include <system_error>

#include "cli/command.h"
#include "cli/open_design.h"
#include "cli/stored_design.h"
#include "interchange/design_json.h"

namespace Quill::Cli {

namespace {

struct Options {
    std::string design;
    std::string target;
};

// The file appears when it is complete, in place of one that is there.
void WriteWhole(const std::string& path, const std::string& text) {
    const std::string unfinished = path + ".new";
    errno = 0;
    std::ofstream file(unfinished, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file || std::rename(unfinished.c_str(), path.c_str()) != 0) {
        const int code = errno != 0 ? errno : EIO;
        std::remove(unfinished.c_str());
        throw CommandError(path + ": " + std::generic_category().message(code));
    }
}

ExitCode Run(const Options& options) {
    const OpenDesign design = ReadDesign(options.design);
    const Orin::String name(std::string_view(design.name));
    if (IsStoredPath(options.target)) {
        WriteStoredDesign(options.target, design.snapshot, name);
        return Done;
    }
    std::string text;
    if (const Orin::Result written = Interchange::WriteDesignJson(design.snapshot, name, text); !written)
        throw CommandError(static_cast<const char*>(written.GetDescription()));
    WriteWhole(options.target, text);
    return Done;
}

}  // namespace

void AddExportCommand(CLI::App& app, Action& chosen) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("export", "Write a design in another form");
    command->add_option("DESIGN", options->design, "design file (JSON, or .qdb)")->required();
    command->add_option("-o,--output", options->target, "file to write: JSON, or a design file when it ends in .qdb")
        ->required();
    command->footer(
        "A design file (.qdb) that is there is left alone; a JSON file is replaced. Save points are in design files "
        "only.\n"
        "\n"
        "Examples:\n"
        "  quill export board.qdb -o board.json\n"
        "  quill export examples/vibration-recorder.json -o recorder.qdb");
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace Quill::Cli
