// quill bus contents: the named buses of a design.
#include <fmt/format.h>

#include "cli/bus_members.h"
#include "cli/command.h"
#include "cli/console.h"
#include "cli/json.h"
#include "cli/open_design.h"
#include "labels/bus_contents_utils.h"

namespace Quill::Cli {

namespace {

using BusContents::Utils::ResolvedContents;
using BusContents::Utils::ResolveStatus;

constexpr std::size_t MaximumContents = 1U << 20;

struct BusContentsOptions {
    std::string design;
    bool json = false;
};

struct NamedBus {
    std::string name;
    std::string contents;
    ResolvedContents resolved;

    // What is wrong with it; empty when nothing is.
    std::string Fault() const {
        switch (resolved.status) {
            case ResolveStatus::Cycle:
                return fmt::format("circle: {}", fmt::join(resolved.cycle, ", "));
            case ResolveStatus::TooLong:
                return fmt::format("longer than {} bytes", MaximumContents);
            case ResolveStatus::Ok:
                break;
        }
        return {};
    }
};

Json AsJson(const std::vector<NamedBus>& buses) {
    Json answer = Json::EmptyList();
    for (const NamedBus& bus : buses) {
        Json object{{"name", bus.name}, {"contents", bus.contents}};
        if (bus.Fault().empty()) {
            object.Add("resolved", bus.resolved.text);
        } else {
            object.Add("fault", bus.Fault());
        }
        answer.Add(std::move(object));
    }
    return answer;
}

std::string AsTable(const std::vector<NamedBus>& buses) {
    Table table({{"Bus"}, {"Contents"}, {"Nets"}});
    for (const NamedBus& bus : buses)
        table.AddRow({bus.name, bus.contents, bus.Fault().empty() ? bus.resolved.text : bus.Fault()});
    return table.Render(HasColours());
}

ExitCode RunBusContents(const BusContentsOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    const LabelRules rules = RulesOfProject();
    std::vector<NamedBus> buses;
    ExitCode code = Done;
    for (const auto& [name, contents] : rules.contents) {
        buses.push_back(
            {name, contents, BusContents::Utils::resolve_bus_contents_checked(name, rules.contents, MaximumContents)});
        if (buses.back().Fault().empty()) continue;
        Say("Bus " + name + " stands for no nets: " + buses.back().Fault());
        code = NegativeAnswer;
    }
    Print(options.json, buses, AsJson, AsTable);
    return code;
}

}  // namespace

void AddBusContentsCommand(CommandLine& line) {
    const auto options = std::make_shared<BusContentsOptions>();
    const Syntax command = line.Add("bus contents", "List the named buses of a design with what they contain",
                                    "Exit code 1 when buses list each other in a circle.\n"
                                    "\n"
                                    "Examples:\n"
                                    "  quill bus contents examples/vibration-recorder.json",
                                    [options] { return RunBusContents(*options); });
    AddDesignArgument(command, options->design);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
