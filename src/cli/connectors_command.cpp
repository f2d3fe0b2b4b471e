// quill connectors: the sheet connectors of a design.
#include <algorithm>
#include <optional>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/json.h"
#include "cli/sheet_connectors.h"

namespace Quill::Cli {

namespace {

struct ConnectorsOptions {
    std::string design;
    std::string config;
    std::optional<std::string> label;
    bool json = false;
};

Json ByLabel(const std::vector<ConnectorEntry>& connectors) {
    Json answer = Json::EmptyObject();
    for (auto connector = connectors.begin(); connector != connectors.end();) {
        const std::string& label = connector->label;
        auto joined = Json::EmptyList();
        for (; connector != connectors.end() && connector->label == label; ++connector)
            joined.Add(AsJson(*connector));
        answer.Add(label, std::move(joined));
    }
    return answer;
}

ExitCode RunConnectors(const ConnectorsOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    std::vector<ConnectorEntry> connectors = SheetConnectors(design, options.config).All();
    if (options.label) {
        const auto isOther = [&](const ConnectorEntry& connector) { return connector.label != *options.label; };
        connectors.erase(std::remove_if(connectors.begin(), connectors.end(), isOther), connectors.end());
    }
    Print(options.json, connectors, ByLabel, ConnectorTable);
    if (!options.label || !connectors.empty()) return Done;
    Say("There is no sheet connector with the label " + *options.label);
    return NegativeAnswer;
}

}  // namespace

void AddConnectorsCommand(CommandLine& line) {
    const auto options = std::make_shared<ConnectorsOptions>();
    const Syntax command = line.Add(
        "connectors", "List the sheet connectors of a design by their labels",
        "Connectors with one label are joined. Those of a label stand in page order; the page is its number in\n"
        "\"quill pages\", and the key tells a connector at one place from the same one at another. Pages that are\n"
        "excluded from printing have none.\n"
        "\n"
        "Examples:\n"
        "  quill connectors examples/vibration-recorder.json\n"
        "  quill connectors examples/vibration-recorder.json --label DRDY",
        [options] { return RunConnectors(*options); });
    AddDesignArgument(command, options->design);
    command.Option("--label", options->label, "only those with this label; exit code 1 when there are none");
    AddConfigOption(command, options->config);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
