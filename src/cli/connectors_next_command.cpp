// quill connectors next: where a sheet connector leads to.
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
    const ConnectorEntry* const next = connectors.Next(connectors.Find(options.key));
    const std::vector<ConnectorEntry> answer = next != nullptr ? std::vector{*next} : std::vector<ConnectorEntry>();
    if (options.json) {
        PrintJson(answer.empty() ? nlohmann::ordered_json() : AsJson(answer).front());
    } else if (!answer.empty()) {
        std::cout << AsTable(answer);
    }
    if (!answer.empty()) return Done;
    Say("The connector stands alone");
    return NegativeAnswer;
}

}  // namespace

void AddConnectorsNextCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App& command = line.Add("connectors next", "Say where a sheet connector leads to",
                                 "The next connector with the same label in page order, around from the last to the\n"
                                 "first. Exit code 1 when there is no other. \"quill connectors\" tells the keys.\n"
                                 "\n"
                                 "Examples:\n"
                                 "  quill connectors next examples/vibration-recorder.json '48:0:7/[128:0:7]'",
                                 [options] { return Run(*options); });
    AddDesignArgument(command, options->design);
    command.add_option("KEY", options->key, "key of the connector")->required();
    AddConfigOption(command, options->config);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
