// quill bus build: a bus label out of nets.
#include <iostream>
#include <list>
#include <optional>

#include "cli/bus_members.h"
#include "cli/command.h"
#include "cli/console.h"
#include "cli/rules_service.h"
#include "labels/bus_contents_utils.h"

namespace Quill::Cli {

namespace {

struct BusBuildOptions {
    std::vector<std::string> nets;
    std::optional<std::string> old;
    std::optional<std::string> design;
    std::optional<std::string> limiter;
    bool bracketSingles = false;
    bool json = false;
};

// The new label of a bus that had the label `old`.
std::string Rebuilt(const std::string& old, const BusBuildOptions& options, const LabelRules& rules) {
    MembersOf(old, rules);  // reports what the library must not be given: contents that go in a circle
    std::list<std::string> nets(options.nets.begin(), options.nets.end());
    return BusContents::Utils::BuildBusLabel(old, nets, options.bracketSingles, LimiterText(rules.limiter));
}

ExitCode RunBusBuild(const BusBuildOptions& options) {
    const LabelRules rules = RulesOf(options.design, options.limiter);
    const RulesService service(rules);
    std::vector<std::string> nets = options.nets;
    const std::string label = options.old ? Rebuilt(*options.old, options, rules)
                                          : BusContents::Utils::BuildBusLabel(nets, options.bracketSingles);
    if (options.json) {
        PrintJson({{"label", label}});
    } else if (!label.empty()) {
        std::cout << Printable(label) << '\n';
    }
    if (!label.empty()) return Done;
    Say("No label can be built of these nets");
    return NegativeAnswer;
}

}  // namespace

void AddBusBuildCommand(CommandLine& line) {
    const auto options = std::make_shared<BusBuildOptions>();
    const Syntax command = line.Add(
        "bus build", "Build a bus label out of nets",
        "Neighbours whose numbers are 1 apart become a range; nets without brackets come last. With --old, the\n"
        "old label stays when it names exactly these nets. Exit code 1 when no label can be built.\n"
        "\n"
        "Examples:\n"
        "  quill bus build 'D[3]' 'D[2]' 'D[1]' CLK\n"
        "  quill bus build 'D(0)' 'D(1)' --limiter '()'\n"
        "  quill bus build --old '{CLK}2' CLK CLK CLK",
        [options] { return RunBusBuild(*options); });
    command.Option("NET", options->nets, "nets in their order").Required();
    command.Option("--old", options->old, "the label that the bus had");
    command.Flag("--bracket-singles", options->bracketSingles, "write a single net as D[3], not as D3");
    AddRuleOptions(command, options->design, options->limiter);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
