// quill map: what a name-map file says.

#include "cli/command.h"
#include "cli/console.h"
#include "cli/json.h"
#include "cli/whole_file.h"
#include "config/map_cfg_file.h"

namespace Quill::Cli {

namespace {

using Pairs = std::map<std::string, std::string>;

struct MapOptions {
    std::string file;
    bool json = false;
};

Json AsJson(const Pairs& pairs) {
    Json answer = Json::EmptyObject();
    for (const auto& [key, value] : pairs)
        answer.Add(key, value);
    return answer;
}

std::string AsTable(const Pairs& pairs) {
    Table table({{"Key"}, {"Value"}});
    for (const auto& [key, value] : pairs)
        table.AddRow({key, value});
    return table.Render(HasColours());
}

ExitCode RunMap(const MapOptions& options) {
    ReadWholeFile(options.file);  // says why where the library would take nothing and say nothing
    MapCfgFile map;
    map.load(options.file);
    map.getMap().erase("");  // stands for what follows the last pair and means nothing
    Print(options.json, map.getMap(), AsJson, AsTable);
    return Done;
}

}  // namespace

void AddMapCommand(CommandLine& line) {
    const auto options = std::make_shared<MapOptions>();
    const Syntax command =
        line.Add("map", "Show what a name-map file says",
                 "The file is read as pairs of texts in double quotes; of several pairs with one key the\n"
                 "last holds. Everything outside the quotes is passed over.\n"
                 "\n"
                 "Examples:\n"
                 "  quill map \"$TOVE_HOME/standard/map.cfg\"",
                 [options] { return RunMap(*options); });
    command.Option("FILE", options->file, "name-map file").Required();
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
