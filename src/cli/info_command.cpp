// quill info: what is in a design.
#include <cstdint>
#include <iostream>
#include <unordered_map>

#include <fmt/format.h>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/json.h"
#include "cli/open_design.h"

namespace Quill::Cli {

namespace {

using Orin::ContainerT;
using Orin::Index;
using Orin::IteratorT;

struct InfoOptions {
    std::string design;
    std::string config;
    bool json = false;
};

// What one block holds, and how often it stands in the hierarchy.
struct BlockCounts {
    std::string name;
    std::uint64_t occurrences = 0;
    std::uint64_t sheets = 0;
    std::uint64_t comps = 0;
    std::uint64_t pins = 0;
    std::uint64_t nets = 0;
    std::uint64_t buses = 0;
    std::vector<Index> children;  // hierarchical components that stand for a block
};

struct Counts {
    std::vector<BlockCounts> blocks;  // schematic ones, in the order of the design
    std::unordered_map<Index, std::size_t> positions;
    std::uint64_t symbols = 0;
    std::uint64_t configs = 0;
    std::uint64_t pages = 0;
};

template <class T>
std::uint64_t CountOf(const IteratorT<const T>& objects) {
    int count = 0;
    Need(objects.GetCount(count));
    return static_cast<std::uint64_t>(count);
}

BlockCounts CountBlock(const Orin::IBlock& block, std::uint64_t& symbols) {
    BlockCounts counts;
    Orin::String name;
    Need(block.GetName(name));
    counts.name = name.View();
    Orin::ListT<Orin::GroupInfo> sheets;
    Need(block.GetListOwnedGroups(sheets, SheetTypes()));
    counts.sheets = sheets.Count();
    IteratorT<const Orin::INet> nets;
    IteratorT<const Orin::IBus> buses;
    IteratorT<const Orin::IComp> comps;
    Need(block.GetIterNets(nets));
    Need(block.GetIterBuses(buses));
    Need(block.GetIterComps(comps, {}));
    counts.nets = CountOf(nets);
    counts.buses = CountOf(buses);
    for (; comps; ++comps) {
        Orin::CompTypes types;
        Need(comps->GetType(types));
        if (types.Contains(Orin::ECompType::Symbol)) {
            ++symbols;
            continue;
        }
        // Frames of sheets are no part of the circuit.
        if (types.Contains(Orin::ECompType::Border)) continue;
        ++counts.comps;
        IteratorT<const Orin::IPin> pins;
        Need(comps->GetIterPins(pins));
        counts.pins += CountOf(pins);
        ContainerT<const Orin::IBlock> child;
        if (!types.Contains(Orin::ECompType::Hierarchical) || !comps->GetChildBlock(child)) continue;
        Index index;
        Need(comps->GetIndex(index));
        counts.children.push_back(index);
    }
    return counts;
}

// Visits every place of the hierarchy below the root and counts the blocks there.
void CountOccurrences(const ContainerT<const Orin::IPath>& root, Counts& counts) {
    std::vector<ContainerT<const Orin::IPath>> open{root};
    while (!open.empty()) {
        const ContainerT<const Orin::IPath> path = open.back();
        open.pop_back();
        ContainerT<const Orin::IBlock> block;
        Index index;
        Need(path->GetBlock(block));
        Need(block->GetIndex(index));
        const auto found = counts.positions.find(index);
        if (found == counts.positions.end()) continue;
        BlockCounts& here = counts.blocks[found->second];
        ++here.occurrences;
        counts.pages += here.sheets;
        for (const Index& comp : here.children) {
            // A block that stands on the path already is not entered again.
            ContainerT<const Orin::IPath> below;
            if (path->GetChildPath(below, comp)) open.push_back(below);
        }
    }
}

Counts CountDesign(const OpenDesign& design, const std::string& configName) {
    Counts counts;
    IteratorT<const Orin::IBlock> blocks;
    Need(design.snapshot->GetIterBlocks(blocks));
    for (; blocks; ++blocks) {
        Orin::BlockTypes types;
        Index index;
        Need(blocks->GetType(types));
        Need(blocks->GetIndex(index));
        BlockCounts block = CountBlock(*blocks, counts.symbols);
        if (!types.Contains(Orin::EBlockType::Schematic)) continue;
        counts.positions.emplace(index, counts.blocks.size());
        counts.blocks.push_back(std::move(block));
    }
    IteratorT<const Orin::IConfig> configs;
    Need(design.snapshot->GetIterConfigs(configs));
    counts.configs = CountOf(configs);
    ContainerT<const Orin::IPath> root;
    if (FindConfig(design, configName)->GetRoot(root)) CountOccurrences(root, counts);
    return counts;
}

std::vector<std::pair<std::string, std::uint64_t>> Totals(const Counts& counts) {
    BlockCounts sum;
    for (const BlockCounts& block : counts.blocks) {
        sum.sheets += block.sheets;
        sum.comps += block.comps;
        sum.pins += block.pins;
        sum.nets += block.nets;
        sum.buses += block.buses;
    }
    return {{"blocks", counts.blocks.size()},
            {"sheets", sum.sheets},
            {"components", sum.comps},
            {"pins", sum.pins},
            {"nets", sum.nets},
            {"buses", sum.buses},
            {"symbols", counts.symbols},
            {"configurations", counts.configs}};
}

Json AsJson(const OpenDesign& design, const Counts& counts) {
    Json kinds;
    for (const auto& [kind, count] : Totals(counts))
        kinds.Add(kind, count);
    return {{"design", design.name}, {"pages", counts.pages}, {"counts", kinds}};
}

std::string RenderTables(const OpenDesign& design, const Counts& counts) {
    std::string out =
        fmt::format("{}: {} {}\n\n", Printable(design.name), counts.pages, counts.pages == 1 ? "page" : "pages");
    for (const auto& [kind, count] : Totals(counts))
        out += fmt::format("{:>8}  {}\n", count, kind);
    using Align = Table::Align;
    Table table({{"Block"},
                 {"Used", Align::Right},
                 {"Sheets", Align::Right},
                 {"Components", Align::Right},
                 {"Pins", Align::Right},
                 {"Nets", Align::Right},
                 {"Buses", Align::Right}});
    for (const BlockCounts& block : counts.blocks) {
        std::vector<std::string> row{block.name};
        for (const std::uint64_t count :
             {block.occurrences, block.sheets, block.comps, block.pins, block.nets, block.buses})
            row.push_back(fmt::format("{}", count));
        table.AddRow(row);
    }
    return out + '\n' + table.Render(HasColours());
}

ExitCode RunInfo(const InfoOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    const Counts counts = CountDesign(design, options.config);
    if (options.json) {
        PrintJson(AsJson(design, counts));
    } else {
        std::cout << RenderTables(design, counts);
    }
    return Done;
}

}  // namespace

void AddInfoCommand(CommandLine& line) {
    const auto options = std::make_shared<InfoOptions>();
    const Syntax command = line.Add(
        "info", "Say what is in a design",
        "Pages are the sheets at each place of the hierarchy; everything else is counted once for each block.\n"
        "\n"
        "Examples:\n"
        "  quill info examples/vibration-recorder.json\n"
        "  quill info --json examples/vibration-recorder.json",
        [options] { return RunInfo(*options); });
    AddDesignArgument(command, options->design);
    AddConfigOption(command, options->config);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
