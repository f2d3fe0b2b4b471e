// The sheet connectors of a design, with their places.
#pragma once

#include <string>
#include <vector>

#include "cli/open_design.h"
#include "sheets/sheet_connectors_cache.h"

namespace Quill::Cli {

struct ConnectorEntry {
    std::string label;
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
    // The configuration called `config` (open_design.h). `design` must outlive the object. Throws a CommandError when
    // the configuration has no connectors to know.
    SheetConnectors(const OpenDesign& design, const std::string& config);

    // By label, byte by byte, then in page order. Pages that are excluded from printing have none.
    std::vector<ConnectorEntry> List();

private:
    const OpenDesign& m_design;
    std::string m_name;
    CSheetConnectorsCache m_cache;
};

}  // namespace Quill::Cli
