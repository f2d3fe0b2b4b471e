// quill symbols: the symbols of a library.
#include <filesystem>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/whole_file.h"
#include "config/symbol_library_finder.h"

namespace Quill::Cli {

namespace {

using zolt::filesystem::path;

struct SymbolsOptions {
    std::string folder;
    bool json = false;
};

// Whether the library keeps its symbols in a table. Throws a CommandError when there are no symbols to be read, of
// which the finder would say nothing.
bool HasTable(const std::string& folder) {
    const path base(folder);
    const path table = base / "sym.tbl";
    if (table.is_file() && (base / "sym.lib").is_file()) {
        ReadWholeFile(table.string());
        return true;
    }
    const path files = base / "sym";
    if (!files.is_dir())
        throw CommandError(folder + ": Is no symbol library: it has neither a folder sym nor sym.tbl and sym.lib");
    std::error_code fault;
    const std::filesystem::directory_iterator readable(files.string(), fault);
    if (fault) throw CommandError(files.string() + ": " + fault.message());
    return false;
}

ExitCode RunSymbols(const SymbolsOptions& options) {
    const bool fromTable = HasTable(options.folder);
    CSymbolFinder finder;
    finder.SearchSymbols(options.folder.c_str(), fromTable);
    const std::vector<std::string> symbols(finder.GetSymbols().begin(), finder.GetSymbols().end());
    if (options.json) {
        PrintJson({{"table", fromTable}, {"symbols", symbols}});
    } else {
        PrintLines(symbols);
    }
    return Done;
}

}  // namespace

void AddSymbolsCommand(CommandLine& line) {
    const auto options = std::make_shared<SymbolsOptions>();
    const Syntax command =
        line.Add("symbols", "List the symbols of a symbol library",
                 "Those in the table sym.tbl of a library that has one and a sym.lib, else the files in\n"
                 "its folder sym. What is not named like a symbol (R.1) is passed over.\n"
                 "\n"
                 "Examples:\n"
                 "  quill symbols central/SymbolLibs/analog",
                 [options] { return RunSymbols(*options); });
    command.Option("FOLDER", options->folder, "folder of the library").Required();
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
