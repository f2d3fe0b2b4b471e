#include "interchange/detail/kicad/definitions.h"

#include "interchange/detail/kicad/geometry.h"
#include "text/number.h"

namespace Quill::Interchange::Kicad {

namespace {

using Orin::EObjectType;
using Orin::Index;

// NICKNAME:NAME
std::pair<std::string_view, std::string_view> SplitLibId(std::string_view libId) {
    const std::size_t colon = libId.find(':');
    if (colon == libId.npos) return {{}, libId};
    return {libId.substr(0, colon), libId.substr(colon + 1)};
}

// What a pin is for, on the pin of the symbol; those of components only have its number.
void AddPinAttributes(const SymbolPin& pin, PinModel& model) {
    if (!pin.name.empty() && pin.name != "~") model.attributes.push_back({"Pin Name", Stored(pin.name)});
    if (!pin.number.empty()) model.attributes.push_back({"Pin Number", Stored(pin.number)});
    if (!pin.type.empty()) model.attributes.push_back({"Pin Type", Stored(pin.type)});
}

PinModel BuildPin(const SymbolPin& pin, const Index& symbol, IndexCounter& indexes) {
    PinModel model;
    model.spec.label = Stored(pin.number);
    model.spec.index = indexes.Next(EObjectType::Pin);
    AddPinAttributes(pin, model);
    Orin::PinDataQuill data;
    data.position = pin.at;
    data.inner = pin.inner;
    data.inverted = pin.shape == "inverted" || pin.shape == "inverted_clock";
    model.drawn.push_back({symbol, data, {}, {}});
    return model;
}

}  // namespace

const LibrarySymbol& Definitions::Read(SchematicFile& file, std::string_view text) {
    const auto known = m_read.find(text);
    if (known != m_read.end()) return known->second;
    return m_read.emplace(text, ReadLibrarySymbol(file.source, text)).first->second;
}

DefinitionId Definitions::Of(SchematicFile& file, const PlacedSymbol& symbol) {
    const std::string_view copy = symbol.libName.empty() ? symbol.libId : symbol.libName;
    const auto found = file.content.librarySymbols.find(copy);
    const bool missing = found == file.content.librarySymbols.end();
    const Key key{missing ? std::string_view() : found->second, symbol.libId, symbol.unit, symbol.bodyStyle};
    const auto [known, isNew] = m_units.try_emplace(key, m_definitions.size());
    if (!isNew) return known->second;

    Definition definition;
    const auto [library, cell] = SplitLibId(symbol.libId);
    definition.library = library;
    definition.cell = cell;
    definition.variant = Text::Render(symbol.unit);
    definition.axis = Axis::Up;
    if (missing) {
        m_warnings.push_back(file.source.At(
            symbol.start, "the file has no copy of the symbol " + std::string(copy) + ", so it has no pins"));
    } else {
        const LibrarySymbol& read = Read(file, found->second);
        definition.power = read.power;
        for (const SymbolPart& part : read.parts) {
            const bool here = (part.unit == 0 || part.unit == symbol.unit) &&
                              (part.bodyStyle == 0 || part.bodyStyle == symbol.bodyStyle);
            if (!here) continue;
            definition.graphics.insert(definition.graphics.end(), part.graphics.begin(), part.graphics.end());
            for (SymbolPin pin : part.pins) {
                pin.at = Flipped(pin.at);
                pin.inner = Flipped(pin.inner);
                definition.pins.push_back(pin);
            }
        }
    }
    m_definitions.push_back(std::move(definition));
    return known->second;
}

std::vector<Index> Definitions::Build(IndexCounter& indexes, std::vector<BlockModel>& blocks) const {
    std::vector<std::string_view> libraries;
    std::unordered_map<std::string_view, std::vector<DefinitionId>> contents;
    for (DefinitionId id = 0; id < m_definitions.size(); ++id) {
        std::vector<DefinitionId>& content = contents[m_definitions[id].library];
        if (content.empty()) libraries.push_back(m_definitions[id].library);
        content.push_back(id);
    }
    std::vector<Index> placed(m_definitions.size());
    for (const std::string_view library : libraries) {
        BlockModel block;
        block.spec.index = indexes.Next(EObjectType::Block);
        block.spec.name = block.spec.libraryName = Stored(library);
        block.spec.types = Orin::EBlockType::Symbol;
        for (const DefinitionId id : contents[library]) {
            const Definition& definition = m_definitions[id];
            CompModel comp;
            comp.spec.index = placed[id] = indexes.Next(EObjectType::Comp);
            comp.spec.name = Stored(definition.cell + "." + definition.variant);
            comp.spec.partition = Stored(library);
            comp.spec.types = Orin::ECompType::Symbol;
            for (const SymbolPin& pin : definition.pins)
                comp.pins.push_back(BuildPin(pin, comp.spec.index, indexes));
            comp.view = std::make_unique<ViewModel>();
            for (const Graphic& graphic : definition.graphics)
                Draw(graphic, definition.axis, indexes, *comp.view);
            block.comps.push_back(std::move(comp));
        }
        blocks.push_back(std::move(block));
    }
    return placed;
}

}  // namespace Quill::Interchange::Kicad
