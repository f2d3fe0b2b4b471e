// quill libraries: the symbol libraries of a central library.

#include "cli/command.h"
#include "cli/console.h"
#include "cli/json.h"
#include "config/symbol_library_finder.h"

namespace Quill::Cli {

namespace {

using zolt::filesystem::path;
using Libraries = std::vector<CSymbolLibsFinder::CSymbolLibsData*>;

struct LibrariesOptions {
    std::string file;
    bool json = false;
};

Json AsJson(const Libraries& libraries) {
    Json answer = Json::EmptyList();
    for (const auto* const library : libraries)
        answer.Add({{"alias", library->GetAlias()}, {"table", library->IsMega()}, {"path", library->GetPath()}});
    return answer;
}

std::string AsTable(const Libraries& libraries) {
    Table table({{"Library"}, {"Symbols in"}, {"Path"}});
    for (const auto* const library : libraries)
        table.AddRow({library->GetAlias(), library->IsMega() ? "table" : "files", library->GetPath()});
    return table.Render(HasColours());
}

ExitCode RunLibraries(const LibrariesOptions& options) {
    // The finder looks in the file's folder and knows none of a bare name.
    const path file = path(options.file).parent_path().empty() ? path(".") / options.file : path(options.file);
    const path folder = file.parent_path() / "SymbolLibs";
    if (!folder.is_dir()) throw CommandError(options.file + ": There is no folder " + folder.string() + " beside it");
    CSymbolLibsFinder finder;
    finder.SearchForLibraries(file.string());
    Print(options.json, finder.GetItems(), AsJson, AsTable);
    return Done;
}

}  // namespace

void AddLibrariesCommand(CommandLine& line) {
    const auto options = std::make_shared<LibrariesOptions>();
    const Syntax command =
        line.Add("libraries", "List the symbol libraries of a central library",
                 "They are the folders in the folder SymbolLibs beside FILE, the central library's own\n"
                 "file. A library is called by the alias in its lib.cfg, else by its folder.\n"
                 "\n"
                 "Examples:\n"
                 "  quill libraries central/central.lmc",
                 [options] { return RunLibraries(*options); });
    command.Option("FILE", options->file, "the central library's file").Required();
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
