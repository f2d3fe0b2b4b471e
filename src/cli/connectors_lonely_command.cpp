// quill connectors lonely: sheet connectors that lead nowhere.

#include "cli/command.h"
#include "cli/console.h"
#include "cli/sheet_connectors.h"

namespace Quill::Cli {

namespace {

struct ConnectorsLonelyOptions {
    std::string design;
    std::string config;
    bool json = false;
};

ExitCode RunConnectorsLonely(const ConnectorsLonelyOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    SheetConnectors connectors(design, options.config);
    std::vector<ConnectorEntry> lonely;
    for (const ConnectorEntry& connector : connectors.All())
        if (connectors.Next(connector) == nullptr) lonely.push_back(connector);
    if (options.json) {
        PrintJson(AsJson(lonely));
    } else if (!lonely.empty()) {
        PrintText(ConnectorTable(lonely));
    }
    return lonely.empty() ? Done : NegativeAnswer;
}

}  // namespace

void AddConnectorsLonelyCommand(CommandLine& line) {
    const auto options = std::make_shared<ConnectorsLonelyOptions>();
    const Syntax command = line.Add("connectors lonely", "List the sheet connectors without another end",
                                    "Exit code 1 when there are any.\n"
                                    "\n"
                                    "Examples:\n"
                                    "  quill connectors lonely examples/vibration-recorder.json",
                                    [options] { return RunConnectorsLonely(*options); });
    AddDesignArgument(command, options->design);
    AddConfigOption(command, options->config);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
