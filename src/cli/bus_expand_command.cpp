// quill bus expand: the nets that a bus label stands for.
#include <iostream>

#include "cli/bus_members.h"
#include "cli/command.h"
#include "cli/console.h"
#include "cli/open_design.h"

namespace Quill::Cli {

namespace {

struct Options {
    std::string label;
    std::string design;
    std::string limiter;
    bool hasLimiter = false;
    bool json = false;
};

ExitCode Run(const Options& options) {
    LabelRules rules;
    if (!options.design.empty()) {
        const OpenDesign design = ReadDesign(options.design);
        rules = RulesOfProject();
    }
    if (options.hasLimiter) rules.limiter = BusContents::NetLimiterFromText(options.limiter);
    const std::vector<std::string> members = MembersOf(options.label, rules);
    if (options.json) {
        PrintJson({{"label", options.label}, {"members", members}});
    } else {
        for (const std::string& member : members)
            std::cout << Printable(member) << '\n';
    }
    return Done;
}

}  // namespace

void AddBusExpandCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App& command = line.Add(
        "bus expand", "List the nets that a bus label stands for",
        "The label is a list of nets, ranges such as D[7:0], and bundles such as {CLK,D[1:0]}2. With a design,\n"
        "it may be the name of a bus whose contents the design holds, and the design says which brackets\n"
        "indexes stand in; otherwise they are square.\n"
        "\n"
        "Examples:\n"
        "  quill bus expand 'D[7:0],CLK'\n"
        "  quill bus expand 'D(3:0)' --limiter '()'\n"
        "  quill bus expand SPI --design examples/vibration-recorder.json --json",
        [options] { return Run(*options); });
    command.add_option("LABEL", options->label, "bus label")->required();
    command.add_option("--design", options->design, "design file (JSON) with contents and brackets of buses");
    command.add_option("--limiter", options->limiter, "brackets of indexes: '[]', '()' or '' for none")
        ->check(CLI::IsMember({"", "[]", "()"}))
        ->each([options = options.get()](const std::string&) { options->hasLimiter = true; });
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
