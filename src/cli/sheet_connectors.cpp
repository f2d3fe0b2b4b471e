#include "cli/sheet_connectors.h"

#include <map>
#include <set>

#include "cli/command.h"
#include "cli/design_lookup.h"
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
        for (const ContainerT<const Orin::IBlock>& block : FindBlocks(m_snapshot, {})) {
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

}  // namespace

SheetConnectors::SheetConnectors(const OpenDesign& design, const std::string& config) : m_design(design) {
    const ContainerT<const Orin::IConfig> configuration = FindConfig(design, config);
    m_name = NameOf(*configuration);
    ContainerT<const Orin::IBlock> block;
    Need(RootOf(*configuration)->GetBlock(block));
    if (NameOf(*block) != m_name)
        throw CommandError("Connectors are known for a configuration that bears the name of its root block only; " +
                           m_name + " has the root block " + NameOf(*block));
    m_cache.attachObserver(design.snapshot);
    ConnectorSymbols symbols(*design.snapshot);
    if (!m_cache.reloadSheetConnectorsList(&symbols)) throw CommandError("The connectors cannot be read");
}

std::vector<ConnectorEntry> SheetConnectors::List() {
    std::vector<ConnectorEntry> entries;
    m_cache.forEachSheetConnector(
        [&](const std::string& design, const std::string& label, const CSheetConnectorData& connector) {
            if (design == m_name) entries.push_back({label, connector, {}, {}, {}, {}, {}});
        });

    PageTraverser pages(m_design.snapshot, m_name, EViewMode::Logical);
    pages.setAlgorithm(EAlgorithm::DepthFirst, ECompAlgorithm::Default);
    pages.update();
    const ContainerT<const Orin::IPath> root = RootOf(*FindConfig(m_design, m_name));
    std::map<std::string, std::size_t> listed;  // a component that stands on several sheets is listed for each
    for (ConnectorEntry& entry : entries) {
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
        entry.way = LabelsOnTheWay(*m_design.snapshot, entry.data.hierarchy);
        entry.symbol = SymbolOf(*comp);
        const Orin::ListT<Orin::GroupInfo> sheets = SheetsOf(*comp);
        const std::size_t place = listed[entry.data.key]++;
        if (place >= sheets.Count()) continue;
        entry.sheet = sheets[place].name.View();
        entry.page = pages.pageNumber({IndexOf(*path), sheets[place].index, {}});
    }
    return entries;
}

}  // namespace Quill::Cli
