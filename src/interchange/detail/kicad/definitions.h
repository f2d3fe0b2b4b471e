// The symbols that components of a design are instances of.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "interchange/detail/kicad/drawing.h"
#include "interchange/detail/kicad/hierarchy.h"

namespace Quill::Interchange::Kicad {

// The library of what the schematic editor itself draws.
inline constexpr std::string_view OwnLibrary = "kicad";

// One unit of a library symbol in one body style, or what stands for a label, a sheet symbol or another mark.
struct Definition {
    std::string library;
    std::string cell;
    std::string variant;
    PowerScope power = PowerScope::None;
    std::vector<SymbolPin> pins;  // y downwards
    std::vector<Graphic> graphics;
    Axis axis = Axis::Down;  // of the graphics
};

using DefinitionId = std::size_t;

// Files carry copies of the library symbols that they use. Copies of equal text are one definition; where files carry
// different copies under one name, each is a definition of its own, with the same name.
class Definitions {
public:
    explicit Definitions(std::vector<KicadMessage>& warnings) : m_warnings(warnings) {}

    DefinitionId Of(SchematicFile& file, const PlacedSymbol& symbol);
    // A mark of the editor's own; `make` fills the definition when it is a new one.
    template <class Make>
    DefinitionId OfMark(const std::string& cell, const std::string& variant, Make&& make) {
        const auto [known, isNew] = m_marks.try_emplace(cell + "." + variant, m_definitions.size());
        if (isNew) {
            Definition definition;
            definition.library = OwnLibrary;
            definition.cell = cell;
            definition.variant = variant;
            make(definition);
            m_definitions.push_back(std::move(definition));
        }
        return known->second;
    }

    const Definition& operator[](DefinitionId id) const { return m_definitions[id]; }

    // Makes a block for each library, in the order in which they were first used, and gives the index of each
    // definition.
    std::vector<Orin::Index> Build(IndexCounter& indexes, std::vector<BlockModel>& blocks) const;

private:
    const LibrarySymbol& Read(SchematicFile& file, std::string_view text);

    std::vector<KicadMessage>& m_warnings;
    std::vector<Definition> m_definitions;
    std::map<std::string, DefinitionId> m_marks;
    std::unordered_map<std::string_view, LibrarySymbol> m_read;  // by text
    struct Key {
        std::string_view text;  // or what it is called, when it is missing
        std::string_view libId;
        std::int32_t unit;
        std::int32_t bodyStyle;
        auto operator<=>(const Key&) const = default;
    };
    std::map<Key, DefinitionId> m_units;
};

}  // namespace Quill::Interchange::Kicad
