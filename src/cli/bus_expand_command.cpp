// quill bus expand: the nets that a bus label stands for.
#include <optional>

#include "cli/bus_members.h"
#include "cli/command.h"
#include "cli/console.h"

namespace Quill::Cli {

namespace {

struct BusExpandOptions {
    std::string label;
    std::optional<std::string> design;
    std::optional<std::string> limiter;
    bool json = false;
};

ExitCode RunBusExpand(const BusExpandOptions& options) {
    const LabelRules rules = RulesOf(options.design, options.limiter);
    const std::vector<std::string> members = MembersOf(options.label, rules);
    if (options.json) {
        PrintJson({{"label", options.label}, {"members", members}});
    } else {
        PrintLines(members);
    }
    return Done;
}

}  // namespace

void AddBusExpandCommand(CommandLine& line) {
    const auto options = std::make_shared<BusExpandOptions>();
    const Syntax command = line.Add(
        "bus expand", "List the nets that a bus label stands for",
        "The label is a list of nets, ranges such as D[7:0], and bundles such as {CLK,D[1:0]}2. With a design,\n"
        "it may be the name of a bus whose contents the design holds, and the design says which brackets\n"
        "indexes stand in; otherwise they are square.\n"
        "\n"
        "Examples:\n"
        "  quill bus expand 'D[7:0],CLK'\n"
        "  quill bus expand 'D(3:0)' --limiter '()'\n"
        "  quill bus expand SPI --design examples/vibration-recorder.json --json",
        [options] { return RunBusExpand(*options); });
    command.Option("LABEL", options->label, "bus label").Required();
    AddRuleOptions(command, options->design, options->limiter);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
