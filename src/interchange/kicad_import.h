// Designs drawn in KiCad, from their schematic files. docs/kicad-import.md says what becomes what.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "orin/orin.h"

namespace Quill::Interchange {

// Something to say about a place in a file.
struct KicadMessage {
    std::string file;        // as reached from the root file's path
    std::size_t line = 0;    // counted from 1; 0 for the file as a whole
    std::size_t column = 0;  // in bytes, counted from 1
    std::string reason;

    // "FILE:LINE:COLUMN: reason", without the numbers for the file as a whole. It may quote the file and so hold any
    // characters.
    std::string Message() const;
};

struct KicadOptions {
    // Child sheets without pins that stand in the design once become further sheets of their parent's block, in the
    // order of their page numbers. A fault when labels that belong to one sheet would then meet.
    bool mergeFlatSheets = false;

    // A sheet whose file cannot be opened stays a component without a child block, with a warning; otherwise a fault.
    bool allowMissing = false;
};

// What the import keeps beside the design proper. Components have these among their system attributes, so that no
// property of the design's author is in the way.
namespace KicadAttributes {
inline constexpr char Uuid[] = "KiCad UUID";  // of sheets, components and pins of sheet symbols
// The text of a label as the file has it: of nets and buses the one that names them, of global and hierarchical labels
// and pins of sheet symbols their own.
inline constexpr char Source[] = "KiCad Label";
// Of nets and buses: the further labels that stand on them, pins of sheet symbols that are called like buses among
// them, one a line, and in the same order their texts as the files have them.
inline constexpr char OtherLabels[] = "Other Labels";
inline constexpr char OtherSources[] = "KiCad Other Labels";
}  // namespace KicadAttributes

// Reads the design whose root schematic stands at `root` into a snapshot of the embedded database, which holds none
// yet, and gives its name, the stem of the root file. All happens in one transaction of the snapshot's client: on a
// fault, the snapshot and `name` are as before. Warnings are appended, also when a fault follows. Equal files give
// equal designs, with equal indexes. Nothing is thrown.
[[nodiscard]] std::optional<KicadMessage> ImportKicad(const std::filesystem::path& root, const KicadOptions& options,
                                                      const Orin::ContainerT<const Orin::ISnapshot>& snapshot,
                                                      Orin::String& name, std::vector<KicadMessage>& warnings);

}  // namespace Quill::Interchange
