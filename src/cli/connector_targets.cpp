#include "cli/connector_targets.h"

#include "cli/console.h"
#include "cli/json.h"
#include "cli/sheet_connectors.h"

namespace Quill::Cli {

void AddTargetsOptions(const Syntax& command, TargetsOptions& options) {
    AddDesignArgument(command, options.design);
    command.Option("KEY", options.key, "key of the connector").Required();
    AddConfigOption(command, options.config);
    AddJsonFlag(command, options.json);
}

ExitCode ShowTargets(const TargetsOptions& options, bool nextOnly) {
    const OpenDesign design = ReadDesign(options.design);
    SheetConnectors connectors(design, options.config);
    const ConnectorEntry& from = connectors.Find(options.key);
    std::vector<ConnectorEntry> answer;
    if (!nextOnly) {
        answer = connectors.Targets(from);
    } else if (const ConnectorEntry* const next = connectors.Next(from)) {
        answer.push_back(*next);
    }
    if (options.json) {
        const Json list = AsJson(answer);
        PrintJson(!nextOnly ? list : answer.empty() ? Json() : list.If<Json::List>()->front());
    } else if (!answer.empty()) {
        PrintText(ConnectorTable(answer));
    }
    if (!answer.empty()) return Done;
    Say("The connector stands alone");
    return NegativeAnswer;
}

}  // namespace Quill::Cli
