// quill buses: the buses of a design with their members.
#include <optional>
#include <set>

#include <fmt/format.h>

#include "cli/bus_members.h"
#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/json.h"
#include "cli/open_design.h"
#include "interchange/kicad_import.h"

namespace Quill::Cli {

namespace {

namespace Attributes = Interchange::KicadAttributes;

struct BusesOptions {
    std::string design;
    std::optional<std::string> block;
    bool json = false;
};

struct BusEntry {
    std::string block;
    std::string sheet;
    std::string label;
    std::string source;  // the label as it was read
    std::vector<std::string> members;
};

std::string AttributeOf(const Orin::IBus& bus, const char* name) {
    Orin::String value;
    return bus.GetAttribute(name, value) ? std::string(value.View()) : std::string();
}

// The labels of a bus, each with its text as it was read.
std::vector<std::pair<std::string, std::string>> LabelsOf(const Orin::IBus& bus) {
    std::vector<std::pair<std::string, std::string>> labels;
    const auto add = [&labels](const std::string& label, const std::string& source) {
        if (!label.empty()) labels.emplace_back(label, source.empty() ? label : source);
    };
    add(LabelOf(bus), AttributeOf(bus, Attributes::Source));
    const std::vector<std::string> others = Lines(AttributeOf(bus, Attributes::OtherLabels));
    const std::vector<std::string> sources = Lines(AttributeOf(bus, Attributes::OtherSources));
    for (std::size_t i = 0; i < others.size(); ++i)
        add(others[i], i < sources.size() ? sources[i] : std::string());
    return labels;
}

// Each label text of the block once, at the first bus that bears it.
void AddBusesOf(const Orin::IBlock& block, const LabelRules& rules, std::vector<BusEntry>& entries) {
    std::set<std::pair<std::string, std::string>> seen;
    Orin::IteratorT<const Orin::IBus> buses;
    Need(block.GetIterBuses(buses));
    for (; buses; ++buses) {
        Orin::ListT<Orin::GroupInfo> sheets;
        Need(buses->GetListGroups(sheets, SheetTypes()));
        const std::string sheet(sheets.IsEmpty() ? std::string_view() : std::as_const(sheets).Front().name.View());
        for (const auto& [label, source] : LabelsOf(*buses))
            if (seen.emplace(label, source).second)
                entries.push_back({NameOf(block), sheet, label, source, MembersOf(label, rules)});
    }
}

Json AsJson(const std::vector<BusEntry>& buses) {
    Json answer = Json::EmptyList();
    for (const BusEntry& bus : buses)
        answer.Add({{"block", bus.block},
                    {"sheet", bus.sheet},
                    {"label", bus.label},
                    {"source", bus.source},
                    {"members", bus.members}});
    return answer;
}

std::string AsTable(const std::vector<BusEntry>& buses) {
    Table table({{"Block"}, {"Sheet"}, {"Label"}, {"Nets", Table::Align::Right}, {"First"}, {"Last"}});
    for (const BusEntry& bus : buses) {
        const bool isEmpty = bus.members.empty();
        table.AddRow({bus.block, bus.sheet, bus.label, fmt::format("{}", bus.members.size()),
                      isEmpty ? "" : bus.members.front(), isEmpty ? "" : bus.members.back()});
    }
    return table.Render(HasColours());
}

ExitCode RunBuses(const BusesOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    const LabelRules rules = RulesOfProject();
    std::vector<BusEntry> buses;
    for (const Orin::ContainerT<const Orin::IBlock>& block :
         options.block ? FindBlocks(*design.snapshot, *options.block) : AllBlocks(*design.snapshot))
        AddBusesOf(*block, rules, buses);
    Print(options.json, buses, AsJson, AsTable);
    return Done;
}

}  // namespace

void AddBusesCommand(CommandLine& line) {
    const auto options = std::make_shared<BusesOptions>();
    const Syntax command = line.Add(
        "buses", "List the labels of all buses with the nets that they stand for",
        "Each label of a block stands once, with the first sheet that bears it. JSON has all nets, and beside the\n"
        "label its text as an imported file has it.\n"
        "\n"
        "Examples:\n"
        "  quill buses examples/vibration-recorder.json\n"
        "  quill buses examples/vibration-recorder.json --block controller --json",
        [options] { return RunBuses(*options); });
    AddDesignArgument(command, options->design);
    command.Option("--block", options->block, "only those of the blocks of this name");
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
