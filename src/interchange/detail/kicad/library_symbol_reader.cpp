// Reads the copy of a library symbol that a schematic file holds.
#include "interchange/detail/kicad/read_parts.h"
#include "text/ascii.h"
#include "text/number.h"

namespace Quill::Interchange::Kicad {

namespace {

// The number at the end of `name` behind an underscore, which is taken off.
std::int32_t TakeNumber(std::string_view& name) {
    const std::size_t underscore = name.rfind('_');
    if (underscore == name.npos) return 0;
    const Text::ParsedNumber<std::int32_t> number = Text::ParseInt32(name.substr(underscore + 1));
    name = name.substr(0, underscore);
    return number.Ok() && number.value > 0 ? number.value : 0;
}

SymbolPin ReadPin(TokenReader& reader) {
    SymbolPin pin;
    if (reader.TryReadWord()) pin.type = reader.Word();
    if (reader.TryReadWord()) pin.shape = reader.Word();
    Placement placement;
    std::int64_t length = 0;
    while (true) {
        const TokenReader::Step step = reader.Next();
        if (step == TokenReader::Step::End) break;
        if (step == TokenReader::Step::Word) {
            if (reader.Word() == "hide") pin.hidden = true;
            continue;
        }
        const std::string_view key = reader.Head();
        if (key == "at") {
            placement = ReadPlacement(reader);
        } else if (key == "hide") {
            pin.hidden = ReadFlag(reader);
        } else {
            if (key == "length") length = reader.ReadLength();
            if (key == "name") pin.name = reader.ReadWord();
            if (key == "number") pin.number = reader.ReadWord();
            reader.Leave();
        }
    }
    pin.at = pin.inner = placement.at;
    switch (placement.angle) {
        case 0:
            pin.inner.x += length;
            break;
        case 90:
            pin.inner.y += length;
            break;
        case 180:
            pin.inner.x -= length;
            break;
        default:
            pin.inner.y -= length;
            break;
    }
    return pin;
}

void ReadPart(TokenReader& reader, LibrarySymbol& symbol) {
    SymbolPart part;
    std::string_view name = reader.ReadWord();  // NAME_UNIT_STYLE
    part.bodyStyle = TakeNumber(name);
    part.unit = TakeNumber(name);
    while (reader.NextList()) {
        if (reader.Head() == "pin") {
            part.pins.push_back(ReadPin(reader));
        } else if (std::optional<Graphic> graphic = ReadGraphic(reader)) {
            part.graphics.push_back(std::move(*graphic));
        } else {
            reader.Leave();
        }
    }
    symbol.parts.push_back(std::move(part));
}

}  // namespace

LibrarySymbol ReadLibrarySymbol(SourceText& source, std::string_view text) {
    TokenReader reader(source, text);
    LibrarySymbol symbol;
    reader.EnterRoot("symbol");
    while (reader.NextList()) {
        if (reader.Head() == "symbol") {
            ReadPart(reader, symbol);
        } else if (reader.Head() == "power") {
            const bool local = reader.TryReadWord() && reader.Word() == "local";
            symbol.power = local ? PowerScope::Local : PowerScope::Global;
            reader.Leave();
        } else {
            reader.Leave();
        }
    }
    return symbol;
}

}  // namespace Quill::Interchange::Kicad
