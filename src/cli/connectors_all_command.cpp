// quill connectors all: what a sheet connector is joined with.
#include <iostream>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/sheet_connectors.h"

namespace Quill::Cli {

namespace {

struct Options {
    std::string design;
    std::string key;
    std::string config;
    bool json = false;
};

ExitCode Run(const Options& options) {
    const OpenDesign design = ReadDesign(options.design);
    SheetConnectors connectors(design, options.config);
    const std::vector<ConnectorEntry> answer = connectors.Targets(connectors.Find(options.key));
    if (options.json) {
        PrintJson(AsJson(answer));
    } else if (!answer.empty()) {
        std::cout << AsTable(answer);
    }
    if (!answer.empty()) return Done;
    Say("The connector stands alone");
    return NegativeAnswer;
}

}  // namespace

void AddConnectorsAllCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App& command = line.Add("connectors all", "List what a sheet connector is joined with",
                                 "All other connectors with the same label, in page order. Exit code 1 when there are\n"
                                 "none. \"quill connectors\" tells the keys.\n"
                                 "\n"
                                 "Examples:\n"
                                 "  quill connectors all examples/lamp/lamp.kicad_sch '[4:0:7]'",
                                 [options] { return Run(*options); });
    AddDesignArgument(command, options->design);
    command.add_option("KEY", options->key, "key of the connector")->required();
    AddConfigOption(command, options->config);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
