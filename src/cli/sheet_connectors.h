// The sheet connectors of a design, with their places.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "cli/json.h"
#include "cli/open_design.h"
#include "sheets/sheet_connectors_cache.h"

namespace Quill::Cli {

struct ConnectorEntry {
    std::string label;  // connectors with one label are joined
    CSheetConnectorData data;
    std::string page;  // number in the walk by depth
    std::string block;
    std::string sheet;
    std::vector<std::string> way;  // labels of the hierarchical components that lead to the page, root first
    std::string symbol;            // "library:cell.variant"
};

// The attribute of a design that says which symbols are its sheet connectors, one "library:cell.variant" a line. In a
// design without it they are "kicad:global_label" in all variants, and the symbols of components of the type
// "connector" but "kicad:hierarchical_label".
inline constexpr char ConnectorSymbolsAttribute[] = "$$Internal_SHEET_CONNECTORS";

// Connectors are known for a configuration that bears the name of its root block.
class SheetConnectors {
public:
    // Whether they are known for the configuration called `config` (open_design.h). Throws a CommandError when there is
    // none.
    static bool AreKnown(const OpenDesign& design, const std::string& config);

    // Of the configuration called `config`. Throws a CommandError when its connectors are not known.
    SheetConnectors(const OpenDesign& design, const std::string& config);

    // By label, byte by byte, then in page order. Pages that are excluded from printing have none.
    const std::vector<ConnectorEntry>& All() const noexcept { return m_entries; }

    // The connector with that key. Throws a CommandError when there is none.
    const ConnectorEntry& Find(const std::string& key) const;

    // The one behind it, around from the last to the first; null when it stands alone. `from` is one of All.
    const ConnectorEntry* Next(const ConnectorEntry& from);

    // All that it is joined with, in page order.
    std::vector<ConnectorEntry> Targets(const ConnectorEntry& from);

private:
    void List(const OpenDesign& design);

    std::string m_name;
    CSheetConnectorsCache m_cache;
    std::vector<ConnectorEntry> m_entries;
    std::unordered_map<std::string, std::size_t> m_places;  // by key; of one that stands on several sheets the first
};

// Members of the JSON object of one connector; the label is not among them.
Json AsJson(const ConnectorEntry& connector);
// An array of such objects, each with its label in front.
Json AsJson(const std::vector<ConnectorEntry>& connectors);
std::string ConnectorTable(const std::vector<ConnectorEntry>& connectors);

}  // namespace Quill::Cli
