// Any bytes as a map file, as a library's own file and as a symbol table.
#include "config/map_cfg_file.h"
#include "config/symbol_library_finder.h"
#include "fuzz/fuzz.h"

namespace {

// "SymbolLibs/one" beside the file "central", with the input as "lib.cfg" and "sym.tbl".
struct Installation {
    Installation() {
        std::filesystem::create_directories(folder / "SymbolLibs/one");
        folder.Write("SymbolLibs/one/sym.lib", "");
    }
    Fuzz::ScratchFolder folder;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Installation installation;
    const std::string_view content = Fuzz::Text(data, size);
    const std::string file = installation.folder.Write("SymbolLibs/one/lib.cfg", content);
    installation.folder.Write("SymbolLibs/one/sym.tbl", content);

    Quill::MapCfgFile map;
    map.load(file);
    for (const auto& [key, value] : map.getMap())
        Fuzz::Require(key.find('"') == std::string::npos && value.find('"') == std::string::npos);

    Quill::CSymbolLibsFinder libraries;
    libraries.SearchCLForLibraries(installation.folder / "central", false, false);
    Fuzz::Require(libraries.GetItems().size() == 1);
    const Quill::CSymbolLibsFinder::CLibCfgParser lines(file);
    for (const auto& [key, value] : lines.GetPairs())
        Fuzz::Require((key + value).find('\n') == std::string::npos && key.find(' ') == std::string::npos);

    Quill::CSymbolFinder symbols;
    symbols.SearchSymbols((installation.folder / "SymbolLibs/one").c_str(), true);
    Fuzz::Require(symbols.GetSymbols().size() <= size / 30);
    for (const std::string& name : symbols.GetSymbols())
        Fuzz::Require(name.size() <= 30 && name.find('.') != std::string::npos);
    return 0;
}
