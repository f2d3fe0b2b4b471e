// Attributes of a design as a whole that keep settings of its project. Programs that bring a design in write them, and
// whoever opens it tells the libraries (platform/project_data.h).
#pragma once

namespace Quill::Interchange::ProjectAttributes {

// The brackets of bus indexes: "", "[]" or "()". Without the attribute: "[]".
inline constexpr char NetLimiter[] = "$$Internal_NET_LIMITER";

// One attribute for each bus that has a name: this text with the name behind it; the value is what the bus contains, a
// comma-separated list of nets and further buses.
inline constexpr char BusContents[] = "$$Internal_BUS_CONTENTS:";

// The symbols that are sheet connectors, one "library:cell.variant" a line. Without the attribute: "kicad:global_label"
// in all its variants, and the symbols of components of the type "connector" but "kicad:hierarchical_label".
inline constexpr char SheetConnectors[] = "$$Internal_SHEET_CONNECTORS";

}  // namespace Quill::Interchange::ProjectAttributes
