#include "cli/sheet_connectors.h"

#include <algorithm>
#include <list>
#include <map>
#include <set>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/json.h"
#include "cli/progress.h"
#include "pages/page_traverser.h"

namespace Quill::Cli {

namespace {

using Orin::ContainerT;
using Orin::IteratorT;

constexpr std::string_view GlobalLabels = "kicad:global_label.";
constexpr std::string_view HierarchicalLabels = "kicad:hierarchical_label.";

bool BeginsWith(std::string_view text, std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
}

// Empty when the component has no symbol.
std::string SymbolOf(const Orin::IComp& comp) {
    ContainerT<const Orin::IComp> definition;
    if (!comp.GetDefinition(definition)) return {};
    Orin::String library;
    static_cast<void>(comp.GetPartitionName(library));  // a symbol may belong to none
    return std::string(library.View()) + ':' + NameOf(*definition);
}

// Which symbols of a design serve as sheet connectors.
class ConnectorSymbols final : public IPinTypeComponentsData {
public:
    explicit ConnectorSymbols(const Orin::ISnapshot& snapshot) : m_snapshot(snapshot) {}

    std::vector<std::string> GetComponents(int pinType) override {
        if (pinType != CSheetConnectorsCache::SheetConnectorPinType) return {};
        Orin::String listed;
        if (m_snapshot.GetAttribute(ConnectorSymbolsAttribute, listed)) return Lines(listed.View());
        std::set<std::string> symbols;
        for (const ContainerT<const Orin::IBlock>& block : AllBlocks(m_snapshot)) {
            IteratorT<const Orin::IComp> comps;
            Need(block->GetIterComps(comps, {}));
            for (; comps; ++comps) {
                Orin::CompTypes types;
                Need(comps->GetType(types));
                const std::string symbol = SymbolOf(*comps);
                const bool isConnector = types.Contains(Orin::ECompType::Connector);
                if (BeginsWith(symbol, GlobalLabels) || (isConnector && !BeginsWith(symbol, HierarchicalLabels)))
                    symbols.insert(symbol);
            }
        }
        return {symbols.begin(), symbols.end()};
    }

private:
    const Orin::ISnapshot& m_snapshot;
};

// The sheets on which the component stands.
Orin::ListT<Orin::GroupInfo> SheetsOf(const Orin::IComp& comp) {
    Orin::ListT<Orin::GroupInfo> sheets;
    Need(comp.GetListGroups(sheets, SheetTypes()));
    return sheets;
}

std::string RootNameOf(const Orin::IConfig& config) {
    ContainerT<const Orin::IBlock> block;
    Need(RootOf(config)->GetBlock(block));
    return NameOf(*block);
}

}  // namespace

bool SheetConnectors::AreKnown(const OpenDesign& design, const std::string& config) {
    const ContainerT<const Orin::IConfig> configuration = FindConfig(design, config);
    return RootNameOf(*configuration) == NameOf(*configuration);
}

SheetConnectors::SheetConnectors(const OpenDesign& design, const std::string& config) {
    const ContainerT<const Orin::IConfig> configuration = FindConfig(design, config);
    m_name = NameOf(*configuration);
    if (const std::string root = RootNameOf(*configuration); root != m_name)
        throw CommandError("Connectors are known for a configuration that bears the name of its root block only; " +
                           m_name + " has the root block " + root);
    const Progress progress("Looking for connectors");
    m_cache.attachObserver(design.snapshot);
    ConnectorSymbols symbols(*design.snapshot);
    if (!m_cache.reloadSheetConnectorsList(&symbols)) throw CommandError("The connectors cannot be read");
    List(design);
}

void SheetConnectors::List(const OpenDesign& design) {
    m_cache.forEachSheetConnector(
        [this](const std::string& root, const std::string& label, const CSheetConnectorData& connector) {
            if (root == m_name) m_entries.push_back({label, connector, {}, {}, {}, {}, {}});
        });

    PageTraverser pages(design.snapshot, m_name, EViewMode::Logical);
    pages.setAlgorithm(EAlgorithm::DepthFirst, ECompAlgorithm::Default);
    pages.update();
    const ContainerT<const Orin::IPath> root = RootOf(*FindConfig(design, m_name));
    std::map<std::string, std::size_t> listed;  // a component that stands on several sheets is listed for each
    for (ConnectorEntry& entry : m_entries) {
        ContainerT<const Orin::IPath> path = root;
        for (const Orin::Index& index : std::as_const(entry.data.hierarchy)) {
            ContainerT<const Orin::IPath> below;
            Need(path->GetChildPath(below, index));
            path = below;
        }
        ContainerT<const Orin::IBlock> block;
        ContainerT<const Orin::IComp> comp;
        Need(path->GetBlock(block));
        Need(block->GetComp(comp, entry.data.index));
        entry.block = NameOf(*block);
        entry.way = LabelsOnTheWay(*design.snapshot, entry.data.hierarchy);
        entry.symbol = SymbolOf(*comp);
        const Orin::ListT<Orin::GroupInfo> sheets = SheetsOf(*comp);
        const std::size_t place = listed[entry.data.key]++;
        if (place >= sheets.Count()) continue;
        entry.sheet = sheets[place].name.View();
        entry.page = pages.pageNumber({IndexOf(*path), sheets[place].index, {}});
    }
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        m_places.try_emplace(m_entries[i].data.key, i);
}

namespace {

// The parts of a symbol as the cache takes them: library, cell, and variant behind the last full stop.
struct SymbolParts {
    explicit SymbolParts(const std::string& symbol) {
        const std::size_t colon = symbol.find(':');
        const std::size_t stop = std::min(symbol.rfind('.'), symbol.size());
        library = symbol.substr(0, colon);
        cell = symbol.substr(colon + 1, stop - colon - 1);
        variant = symbol.substr(std::min(stop + 1, symbol.size()));
    }

    std::string library, cell, variant;
};

}  // namespace

const ConnectorEntry& SheetConnectors::Find(const std::string& key) const {
    const auto found = m_places.find(key);
    if (found == m_places.end()) throw CommandError("There is no sheet connector with the key " + key);
    return m_entries[found->second];
}

const ConnectorEntry* SheetConnectors::Next(const ConnectorEntry& from) {
    const SymbolParts symbol(from.symbol);
    const CSheetConnectorData* next = nullptr;
    if (!m_cache.getNextTargetSheetConnector(symbol.library, symbol.cell, symbol.variant, m_name, from.label,
                                             from.data.index, from.data.hierarchy, &next))
        return nullptr;
    return &Find(next->key);
}

std::vector<ConnectorEntry> SheetConnectors::Targets(const ConnectorEntry& from) {
    const SymbolParts symbol(from.symbol);
    std::list<const CSheetConnectorData*> targets;
    m_cache.getAllTargetSheetConnectors(symbol.library, symbol.cell, symbol.variant, m_name, from.label,
                                        from.data.index, from.data.hierarchy, targets);
    std::vector<ConnectorEntry> entries;
    for (const CSheetConnectorData* const target : targets)
        entries.push_back(Find(target->key));
    return entries;
}

Json AsJson(const ConnectorEntry& connector) {
    return {{"key", connector.data.key},
            {"block", connector.block},
            {"sheet", connector.sheet},
            {"path", connector.way},
            {"symbol", connector.symbol}};
}

Json AsJson(const std::vector<ConnectorEntry>& connectors) {
    Json answer = Json::EmptyList();
    for (const ConnectorEntry& connector : connectors) {
        Json object{{"label", connector.label}};
        object.AddMembersOf(AsJson(connector));
        answer.Add(std::move(object));
    }
    return answer;
}

std::string ConnectorTable(const std::vector<ConnectorEntry>& connectors) {
    using Align = Table::Align;
    Table table({{"Label"}, {"Page", Align::Right}, {"Path"}, {"Block"}, {"Sheet"}, {"Symbol"}, {"Key"}});
    for (const ConnectorEntry& connector : connectors)
        table.AddRow({connector.label, connector.page, WayText(connector.way), connector.block, connector.sheet,
                      connector.symbol, connector.data.key});
    return table.Render(HasColours());
}

}  // namespace Quill::Cli
