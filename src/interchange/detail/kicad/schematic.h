// What a schematic file says, before it is known where in a design the file stands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "interchange/detail/kicad/source_text.h"
#include "interchange/detail/kicad/token_reader.h"
#include "orin/records.h"

namespace Quill::Interchange::Kicad {

// All texts are views into the SourceText that was read. Offsets are places in it, for messages. Lengths are
// nanometres, x to the right; y downwards on sheets, and upwards in symbols, as the files have it.

struct TextLook {
    std::string_view face;
    std::int64_t height = 0;
    Orin::EHorizontalAlign horizontal = Orin::EHorizontalAlign::Centre;
    Orin::EVerticalAlign vertical = Orin::EVerticalAlign::Centre;
    bool hidden = false;
};

// A property of a symbol, sheet or label.
struct Field {
    std::string_view name;
    std::string_view value;
    std::size_t valueStart = 0;
    std::optional<std::int32_t> number;  // which older files have
    Orin::Point at;
    int angle = 0;  // in degrees, counter-clockwise
    TextLook look;
    bool showName = false;
};

// What a symbol or sheet is called at one place of a hierarchy.
struct Instance {
    std::string_view project;
    std::string_view path;
    std::string_view text;  // the reference of a symbol, the page number of a sheet
    std::optional<std::int32_t> unit;
};

enum class Mirror : std::uint8_t { None, AboutX, AboutY };

struct PlacedSymbol {
    std::size_t start = 0;
    std::string_view libId;
    std::string_view libName;  // of the copy in the file, when it is not that of the library
    Orin::Point at;
    int angle = 0;
    Mirror mirror = Mirror::None;
    std::int32_t unit = 1;
    std::int32_t bodyStyle = 1;
    std::string_view uuid;
    std::vector<Field> fields;
    std::vector<Instance> instances;
    std::vector<std::pair<std::string_view, std::string_view>> flags;  // "in_bom" and so on, with "yes" or "no"
};

struct SheetPin {
    std::size_t start = 0;
    std::string_view name;
    std::string_view shape;
    Orin::Point at;
    int angle = 0;
    TextLook look;
    std::string_view uuid;
};

struct SheetSymbol {
    std::size_t start = 0;
    std::size_t fileStart = 0;  // where the name of its file stands
    Orin::Point at;
    Orin::Point size;
    Orin::LineStyle style;
    std::string_view uuid;
    std::string_view name;
    std::string_view file;
    std::vector<Field> fields;
    std::vector<SheetPin> pins;
    std::vector<Instance> instances;
};

enum class LabelType : std::uint8_t { Local, Global, Hierarchical, Directive };

struct Label {
    LabelType type = LabelType::Local;
    std::size_t start = 0;
    std::string_view text;
    std::string_view shape;
    Orin::Point at;
    int angle = 0;
    TextLook look;
    std::string_view uuid;
    std::vector<Field> fields;
};

struct Wire {
    bool bus = false;
    std::vector<Orin::Point> points;
    Orin::LineStyle style;
};

struct EntryMark {
    Orin::Point at;
    Orin::Point size;
    std::string_view uuid;
};

struct NoConnect {
    Orin::Point at;
    std::string_view uuid;
};

struct BusAlias {
    std::string_view name;
    std::vector<std::string_view> members;
};

enum class GraphicKind : std::uint8_t { Line, Bezier, Rectangle, Arc, Circle, Text, TextBox };

struct Graphic {
    GraphicKind kind = GraphicKind::Line;
    std::vector<Orin::Point>
        points;  // a rectangle's or box's corners; start, middle and end of an arc; a centre; a place
    std::int64_t radius = 0;
    std::string_view text;
    int angle = 0;
    TextLook look;
    Orin::LineStyle style;
};

struct SymbolPin {
    std::string_view number;
    std::string_view name;
    std::string_view type;
    std::string_view shape;
    Orin::Point at;
    Orin::Point inner;
    bool hidden = false;
};

// One part of a library symbol: what unit and body style have in common or, where they are 0, all of them.
struct SymbolPart {
    std::int32_t unit = 0;
    std::int32_t bodyStyle = 0;
    std::vector<SymbolPin> pins;
    std::vector<Graphic> graphics;
};

enum class PowerScope : std::uint8_t { None, Global, Local };

struct LibrarySymbol {
    PowerScope power = PowerScope::None;
    std::vector<SymbolPart> parts;
};

struct Schematic {
    std::int64_t version = 0;
    std::string_view uuid;
    std::string_view paper;
    std::vector<std::pair<std::string_view, std::string_view>> titles;
    std::unordered_map<std::string_view, std::string_view> librarySymbols;  // by name: the text of each, yet to be read
    std::vector<PlacedSymbol> symbols;
    std::vector<SheetSymbol> sheets;
    std::vector<Label> labels;
    std::vector<Wire> wires;
    std::vector<EntryMark> entries;
    std::vector<Orin::Point> junctions;
    std::vector<NoConnect> noConnects;
    std::vector<Graphic> graphics;
    std::vector<BusAlias> aliases;
    std::vector<Instance> sheetInstances;   // of the whole design, when the file is its root
    std::vector<Instance> symbolInstances;  // the same
    std::size_t images = 0;                 // which designs cannot hold
};

// Throws a KicadMessage when the text is no schematic. Warnings are appended.
Schematic ReadSchematic(SourceText& source, std::vector<KicadMessage>& warnings);

// Reads one of the `librarySymbols`.
LibrarySymbol ReadLibrarySymbol(SourceText& source, std::string_view text);

}  // namespace Quill::Interchange::Kicad
