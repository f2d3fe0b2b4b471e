// quill nets: the net names in use.
#include <map>
#include <optional>

#include <fmt/format.h>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/json.h"
#include "cli/open_design.h"
#include "designdata/net_names_collector.h"

namespace Quill::Cli {

namespace {

struct NetsOptions {
    std::string design;
    std::optional<std::string> block;
    bool json = false;
};

struct NetCounts {
    unsigned nets = 0;
    unsigned pins = 0;
};

struct NetName {
    std::string block;
    std::string name;  // empty for all nets without one
    NetCounts counts;
};

// How many nets of the block bear each label, and how many pins they connect.
std::map<std::string, NetCounts> CountNets(const Orin::IBlock& block) {
    std::map<std::string, NetCounts> counts;
    Orin::IteratorT<const Orin::INet> nets;
    Need(block.GetIterNets(nets));
    for (; nets; ++nets) {
        Orin::IteratorT<const Orin::IPin> pins;
        Need(nets->GetIterPinsConnected(pins));
        int count = 0;
        Need(pins.GetCount(count));
        NetCounts& here = counts[LabelOf(*nets)];
        ++here.nets;
        here.pins += static_cast<unsigned>(count);
    }
    return counts;
}

Json AsJson(const std::vector<NetName>& names) {
    Json answer = Json::EmptyList();
    for (const NetName& name : names)
        answer.Add(
            {{"block", name.block}, {"name", name.name}, {"nets", name.counts.nets}, {"pins", name.counts.pins}});
    return answer;
}

std::string AsTable(const std::vector<NetName>& names) {
    using Align = Table::Align;
    Table table({{"Block"}, {"Name"}, {"Nets", Align::Right}, {"Pins", Align::Right}});
    for (const NetName& name : names)
        table.AddRow({name.block, name.name.empty() ? "(none)" : name.name, fmt::format("{}", name.counts.nets),
                      fmt::format("{}", name.counts.pins)});
    return table.Render(HasColours());
}

ExitCode RunNets(const NetsOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    NetsNamesCollector collector;
    collector.AttachObserver(design.snapshot);
    std::vector<NetName> names;
    for (const Orin::ContainerT<const Orin::IBlock>& block :
         options.block ? FindBlocks(*design.snapshot, *options.block) : AllBlocks(*design.snapshot)) {
        std::map<std::string, NetCounts> counts = CountNets(*block);
        for (const std::string& name : collector.GetExistingNames(IndexOf(*block)))
            names.push_back({NameOf(*block), name, counts[name]});
    }
    Print(options.json, names, AsJson, AsTable);
    return Done;
}

}  // namespace

void AddNetsCommand(CommandLine& line) {
    const auto options = std::make_shared<NetsOptions>();
    const Syntax command =
        line.Add("nets", "List the net names in use in each block",
                 "With how many nets bear the name and how many pins they connect. Nets without a name\n"
                 "are one line of each block.\n"
                 "\n"
                 "Examples:\n"
                 "  quill nets examples/lamp/lamp.kicad_sch\n"
                 "  quill nets examples/vibration-recorder.json controller --json",
                 [options] { return RunNets(*options); });
    AddDesignArgument(command, options->design);
    command.Option("BLOCK", options->block, "only the blocks of this name");
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
