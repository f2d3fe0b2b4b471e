// Reads the items of a schematic file.
#include "interchange/detail/kicad/read_parts.h"
#include "text/number.h"

namespace Quill::Interchange::Kicad {

namespace {

// The versions of the format that are known.
constexpr std::int64_t FirstVersion = 20211123;
constexpr std::int64_t LastVersion = 20260306;

void ReadVersion(Schematic& schematic, TokenReader& reader) {
    schematic.version = reader.ReadInteger();
    reader.Leave();
}

void ReadUuid(Schematic& schematic, TokenReader& reader) {
    schematic.uuid = ReadValue(reader);
}

void ReadPaper(Schematic& schematic, TokenReader& reader) {
    schematic.paper = ReadValue(reader);
}

void ReadTitles(Schematic& schematic, TokenReader& reader) {
    while (reader.NextList()) {
        const std::string_view name = reader.Head();
        std::string_view value;
        while (reader.TryReadWord())
            value = reader.Word();  // of a comment, its number stands in front
        if (name != "comment" && !value.empty()) schematic.titles.emplace_back(name, value);
        reader.Leave();
    }
}

// The symbols are many and large, and most files share them: they are read when they are used.
void ReadLibrarySymbols(Schematic& schematic, TokenReader& reader) {
    while (reader.NextList()) {
        const std::size_t start = reader.ListStart();
        const bool isSymbol = reader.Head() == "symbol";
        const std::string_view name = isSymbol ? reader.ReadWord() : std::string_view();
        reader.Leave();
        if (isSymbol)
            schematic.librarySymbols.emplace(name, reader.Source().Text().substr(start, reader.Position() - start));
    }
}

void ReadJunction(Schematic& schematic, TokenReader& reader) {
    while (reader.NextList()) {
        if (reader.Head() == "at") schematic.junctions.push_back(reader.ReadPoint());
        reader.Leave();
    }
}

void ReadNoConnect(Schematic& schematic, TokenReader& reader) {
    NoConnect mark;
    while (reader.NextList()) {
        if (reader.Head() == "at") mark.at = reader.ReadPoint();
        if (reader.Head() == "uuid") mark.uuid = reader.ReadWord();
        reader.Leave();
    }
    schematic.noConnects.push_back(mark);
}

void ReadBusEntry(Schematic& schematic, TokenReader& reader) {
    EntryMark entry;
    while (reader.NextList()) {
        if (reader.Head() == "at") entry.at = reader.ReadPoint();
        if (reader.Head() == "size") entry.size = reader.ReadPoint();
        if (reader.Head() == "uuid") entry.uuid = reader.ReadWord();
        reader.Leave();
    }
    schematic.entries.push_back(entry);
}

void ReadWire(Schematic& schematic, TokenReader& reader) {
    Wire wire;
    wire.bus = reader.Head() == "bus";
    while (reader.NextList()) {
        if (reader.Head() == "pts") {
            wire.points = ReadPoints(reader);
        } else if (reader.Head() == "stroke") {
            ReadStroke(reader, wire.style);
        } else {
            reader.Leave();
        }
    }
    schematic.wires.push_back(std::move(wire));
}

constexpr std::array<std::pair<std::string_view, LabelType>, 5> LabelTypes{
    {{"label", LabelType::Local},
     {"global_label", LabelType::Global},
     {"hierarchical_label", LabelType::Hierarchical},
     {"directive_label", LabelType::Directive},
     {"netclass_flag", LabelType::Directive}}};

void ReadLabel(Schematic& schematic, TokenReader& reader) {
    Label label;
    label.type = *Named(LabelTypes, reader.Head());
    label.start = reader.ListStart();
    label.text = reader.ReadWord();
    while (reader.NextList()) {
        const std::string_view key = reader.Head();
        if (key == "at") {
            const Placement placement = ReadPlacement(reader);
            label.at = placement.at;
            label.angle = placement.angle;
        } else if (key == "effects") {
            label.look = ReadEffects(reader);
        } else if (key == "property") {
            label.fields.push_back(ReadField(reader));
        } else {
            if (key == "shape") label.shape = reader.ReadWord();
            if (key == "uuid") label.uuid = reader.ReadWord();
            reader.Leave();
        }
    }
    schematic.labels.push_back(std::move(label));
}

constexpr std::string_view SymbolFlags[] = {"in_bom", "on_board", "dnp", "exclude_from_sim", "in_pos_files"};

bool IsSymbolFlag(std::string_view key) noexcept {
    for (const std::string_view flag : SymbolFlags)
        if (flag == key) return true;
    return false;
}

void ReadSymbol(Schematic& schematic, TokenReader& reader) {
    PlacedSymbol symbol;
    symbol.start = reader.ListStart();
    while (reader.NextList()) {
        const std::string_view key = reader.Head();
        if (key == "property") {
            symbol.fields.push_back(ReadField(reader));
        } else if (key == "at") {
            const Placement placement = ReadPlacement(reader);
            symbol.at = placement.at;
            symbol.angle = placement.angle;
        } else if (key == "instances") {
            symbol.instances = ReadInstances(reader);
        } else if (IsSymbolFlag(key)) {
            symbol.flags.emplace_back(key, ReadFlag(reader) ? "yes" : "no");
        } else {
            if (key == "lib_id") symbol.libId = reader.ReadWord();
            if (key == "lib_name") symbol.libName = reader.ReadWord();
            if (key == "uuid") symbol.uuid = reader.ReadWord();
            if (key == "unit") symbol.unit = reader.ReadInteger();
            if (key == "convert" || key == "body_style") symbol.bodyStyle = reader.ReadInteger();
            if (key == "mirror") symbol.mirror = reader.ReadWord() == "x" ? Mirror::AboutX : Mirror::AboutY;
            reader.Leave();
        }
    }
    OrderFields(symbol.fields);
    schematic.symbols.push_back(std::move(symbol));
}

SheetPin ReadSheetPin(TokenReader& reader) {
    SheetPin pin;
    pin.start = reader.ListStart();
    pin.name = reader.ReadWord();
    if (reader.TryReadWord()) pin.shape = reader.Word();
    while (reader.NextList()) {
        if (reader.Head() == "at") {
            const Placement placement = ReadPlacement(reader);
            pin.at = placement.at;
            pin.angle = placement.angle;
        } else if (reader.Head() == "effects") {
            pin.look = ReadEffects(reader);
        } else {
            if (reader.Head() == "uuid") pin.uuid = reader.ReadWord();
            reader.Leave();
        }
    }
    return pin;
}

void ReadSheet(Schematic& schematic, TokenReader& reader) {
    SheetSymbol sheet;
    sheet.start = sheet.fileStart = reader.ListStart();
    while (reader.NextList()) {
        const std::string_view key = reader.Head();
        if (key == "property") {
            sheet.fields.push_back(ReadField(reader));
        } else if (key == "pin") {
            sheet.pins.push_back(ReadSheetPin(reader));
        } else if (key == "instances") {
            sheet.instances = ReadInstances(reader);
        } else if (key == "stroke") {
            ReadStroke(reader, sheet.style);
        } else {
            if (key == "at") sheet.at = reader.ReadPoint();
            if (key == "size") sheet.size = reader.ReadPoint();
            if (key == "uuid") sheet.uuid = reader.ReadWord();
            reader.Leave();
        }
    }
    OrderFields(sheet.fields);
    // The first two properties are the sheet's name and file, whatever they are called: their names were translated
    // once.
    if (!sheet.fields.empty()) sheet.name = sheet.fields[0].value;
    if (sheet.fields.size() > 1) {
        sheet.file = sheet.fields[1].value;
        sheet.fileStart = sheet.fields[1].valueStart;
    }
    schematic.sheets.push_back(std::move(sheet));
}

void ReadAlias(Schematic& schematic, TokenReader& reader) {
    BusAlias alias;
    alias.name = reader.ReadWord();
    while (reader.NextList()) {
        if (reader.Head() == "members") {
            while (reader.TryReadWord())
                alias.members.push_back(reader.Word());
        }
        reader.Leave();
    }
    schematic.aliases.push_back(std::move(alias));
}

void ReadTable(Schematic& schematic, TokenReader& reader) {
    while (reader.NextList()) {
        if (reader.Head() != "cells") {
            reader.Leave();
            continue;
        }
        while (reader.NextList()) {
            if (std::optional<Graphic> cell = ReadGraphic(reader)) {
                schematic.graphics.push_back(std::move(*cell));
            } else {
                reader.Leave();
            }
        }
    }
}

void ReadImage(Schematic& schematic, TokenReader& reader) {
    ++schematic.images;
    reader.Leave();
}

void ReadSheetInstances(Schematic& schematic, TokenReader& reader) {
    ReadPaths(reader, {}, schematic.sheetInstances);
}

void ReadSymbolInstances(Schematic& schematic, TokenReader& reader) {
    ReadPaths(reader, {}, schematic.symbolInstances);
}

using ReadItem = void (*)(Schematic&, TokenReader&);

constexpr std::array<std::pair<std::string_view, ReadItem>, 22> Items{{{"wire", ReadWire},
                                                                       {"symbol", ReadSymbol},
                                                                       {"label", ReadLabel},
                                                                       {"junction", ReadJunction},
                                                                       {"bus", ReadWire},
                                                                       {"bus_entry", ReadBusEntry},
                                                                       {"no_connect", ReadNoConnect},
                                                                       {"global_label", ReadLabel},
                                                                       {"hierarchical_label", ReadLabel},
                                                                       {"directive_label", ReadLabel},
                                                                       {"netclass_flag", ReadLabel},
                                                                       {"sheet", ReadSheet},
                                                                       {"table", ReadTable},
                                                                       {"image", ReadImage},
                                                                       {"bus_alias", ReadAlias},
                                                                       {"version", ReadVersion},
                                                                       {"uuid", ReadUuid},
                                                                       {"paper", ReadPaper},
                                                                       {"title_block", ReadTitles},
                                                                       {"lib_symbols", ReadLibrarySymbols},
                                                                       {"sheet_instances", ReadSheetInstances},
                                                                       {"symbol_instances", ReadSymbolInstances}}};

}  // namespace

Schematic ReadSchematic(SourceText& source, std::vector<KicadMessage>& warnings) {
    TokenReader reader(source);
    Schematic schematic;
    reader.EnterRoot("kicad_sch");
    while (reader.NextList()) {
        if (const std::optional<ReadItem> read = Named(Items, reader.Head())) {
            (*read)(schematic, reader);
        } else if (std::optional<Graphic> graphic = ReadGraphic(reader)) {
            schematic.graphics.push_back(std::move(*graphic));
        } else {
            reader.Leave();
        }
    }
    reader.ExpectEnd();
    if (schematic.version < FirstVersion || schematic.version > LastVersion) {
        std::string reason = "the format version ";
        Text::AppendNumber(reason, schematic.version);
        warnings.push_back(source.Whole(reason + " is not known; the file is read as far as it is understood"));
    }
    if (schematic.images != 0) {
        std::string reason = "images are left out: ";
        Text::AppendNumber(reason, schematic.images);
        warnings.push_back(source.Whole(std::move(reason)));
    }
    return schematic;
}

}  // namespace Quill::Interchange::Kicad
