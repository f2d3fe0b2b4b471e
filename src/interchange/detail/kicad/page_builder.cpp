#include "interchange/detail/kicad/page_builder.h"

#include <set>

#include "interchange/detail/kicad/geometry.h"
#include "properties/property_mangler.h"
#include "text/number.h"

namespace Quill::Interchange::Kicad {

namespace {

using DataModel::PropertyType;
using Orin::EAttributeType;
using Orin::ECompType;
using Orin::EObjectType;
using Orin::Index;
using Orin::Point;

Orin::Attribute User(std::string_view name, std::string_view value) {
    return {Stored(name), Stored(value), EAttributeType::User};
}

void AddSystem(CompModel& comp, std::string_view name, std::string_view value) {
    if (!value.empty()) comp.attributes.push_back({Stored(name), Stored(value), EAttributeType::System});
}

Orin::Attribute Internal(const char* key, std::string_view value) {
    return {Utils::CPropertyMangler::Mangle(key, PropertyType::Internal), Stored(value), EAttributeType::User};
}

Orin::DesignDb::DrawingInfo DrawnOn(const Index& group, const Orin::CompDataQuill& body) {
    return {group, body, {}, {}};
}

// The first properties are known by where they stand, since their names were translated once; further ones only in
// files that number them, since others may leave some out.
constexpr std::size_t AlwaysPresent = 2;
using FieldNames = std::array<std::string_view, 4>;  // empty: as the file has it
constexpr FieldNames SymbolFieldNames{"Reference", "Value", "Footprint", "Datasheet"};
constexpr FieldNames SheetFieldNames{"Sheetname", "Sheetfile"};

// What a symbol is when its file does not say otherwise; only the exceptions are kept.
struct UsualFlag {
    std::string_view name;
    std::string_view value;
};
constexpr UsualFlag UsualFlags[] = {
    {"in_bom", "yes"}, {"on_board", "yes"}, {"dnp", "no"}, {"exclude_from_sim", "no"}, {"in_pos_files", "yes"}};

// How a title block's entries are called in designs.
struct TitleName {
    std::string_view entry;
    const char* name;
};
constexpr TitleName TitleNames[] = {{"title", "TITLE"}, {"date", "DATE"}, {"rev", "REVISION"}, {"company", "COMPANY"}};

class PageBuilder {
public:
    PageBuilder(SchematicFile& file, BlockDraft& draft, DesignParts& parts)
        : m_file(file),
          m_draft(draft),
          m_parts(parts),
          m_page(draft.model.groups.size()),
          m_group(draft.model.groups.emplace_back()) {
        m_draft.geometry.emplace_back();
    }

    BuiltPage Build(std::string_view name, bool numbered, const std::vector<SheetTarget>& targets);

private:
    void AddBorder();
    void AddSymbol(const PlacedSymbol& symbol);
    void AddSheet(const SheetSymbol& sheet, const Orin::DesignDb::BlockSpec* block);
    void AddMergedSheet(const SheetSymbol& sheet);
    void AddLabel(const Label& label);
    void AddEntry(const EntryMark& entry);
    void AddNoConnect(const NoConnect& mark);
    void AddWire(const Wire& wire);
    void AddJunction(const Point& at);
    CompModel& AddComp(CompModel comp, DefinitionId definition);
    CompModel& AddMark(const std::string& cell, const std::string& variant, const Point& at, int angle);
    void AddFields(CompModel& comp, const std::vector<Field>& fields, const FieldNames& names, int angle = 0,
                   Mirror mirror = Mirror::None);
    Index AddPin(CompModel& comp, std::string_view label);
    void Connect(const Point& at, const Index& pin);
    void ConnectLabel(DraftLabel label, LabelRank rank, bool bus);

    SchematicFile& m_file;
    BlockDraft& m_draft;
    DesignParts& m_parts;
    const std::size_t m_page;
    GroupModel& m_group;
};

BuiltPage PageBuilder::Build(std::string_view name, bool numbered, const std::vector<SheetTarget>& targets) {
    const Schematic& content = m_file.content;
    m_group.spec.name = Stored(name);
    m_group.spec.index = m_parts.indexes.Next(EObjectType::Group);
    m_group.view = std::make_unique<ViewModel>();
    const std::string order = Text::Render(m_page + 1);
    m_group.attributes.push_back(Internal("ID", order));
    m_group.attributes.push_back(Internal("CUSTOM_ORDER", order));
    if (!content.uuid.empty()) m_group.attributes.push_back(User(KicadAttributes::Uuid, content.uuid));
    AddTitles(content, m_group.attributes);

    BuiltPage built;
    if (numbered) {
        built.border = m_draft.model.comps.size();
        AddBorder();
    }
    built.firstSymbol = m_draft.model.comps.size();
    for (const PlacedSymbol& symbol : content.symbols)
        AddSymbol(symbol);
    for (std::size_t i = 0; i < content.sheets.size(); ++i) {
        if (targets[i].merged) {
            AddMergedSheet(content.sheets[i]);
            built.sheets.emplace_back();
        } else {
            AddSheet(content.sheets[i], targets[i].block);
            built.sheets.push_back(m_draft.model.comps.back().spec.index);
        }
    }
    for (const Label& label : content.labels)
        AddLabel(label);
    for (const EntryMark& entry : content.entries)
        AddEntry(entry);
    for (const NoConnect& mark : content.noConnects)
        AddNoConnect(mark);
    for (const Wire& wire : content.wires)
        AddWire(wire);
    for (const Point& at : content.junctions)
        AddJunction(at);
    for (const Graphic& graphic : content.graphics)
        Draw(graphic, Axis::Down, m_parts.indexes, *m_group.view);
    return built;
}

CompModel& PageBuilder::AddComp(CompModel comp, DefinitionId definition) {
    comp.spec.index = m_parts.indexes.Next(EObjectType::Comp);
    m_group.members.push_back(comp.spec.index);
    m_draft.definitions.push_back(definition);
    return m_draft.model.comps.emplace_back(std::move(comp));
}

// The frame of a page, which carries its number at each place where it has one.
void PageBuilder::AddBorder() {
    CompModel border;
    border.spec.label = "FRAME";
    border.spec.name = Stored(m_file.content.paper);
    border.spec.partition = Stored(OwnLibrary);
    border.spec.types = Orin::CompTypes(ECompType::Border) | ECompType::Titled;
    border.drawn.push_back(DrawnOn(m_group.spec.index, {}));
    AddComp(std::move(border), NoDefinition);
}

Index PageBuilder::AddPin(CompModel& comp, std::string_view label) {
    PinModel& pin = comp.pins.emplace_back();
    pin.spec.label = Stored(label);
    return pin.spec.index = m_parts.indexes.Next(EObjectType::Pin);
}

void PageBuilder::Connect(const Point& at, const Index& pin) {
    m_draft.geometry[m_page].pins.push_back({static_cast<ItemId>(m_draft.pins.size()), at});
    m_draft.pins.push_back({m_page, at, pin});
}

void PageBuilder::ConnectLabel(DraftLabel label, LabelRank rank, bool bus) {
    label.page = m_page;
    m_draft.geometry[m_page].labels.push_back(
        {static_cast<ItemId>(m_draft.labels.size()), label.at, label.text, rank, bus});
    m_draft.labels.push_back(std::move(label));
}

void PageBuilder::AddFields(CompModel& comp, const std::vector<Field>& fields, const FieldNames& names, int angle,
                            Mirror mirror) {
    std::set<std::string_view> given;
    std::vector<Orin::DesignDb::DrawnAttributeInfo> drawn;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Field& field = fields[i];
        const bool known = i < names.size() && !names[i].empty() &&
                           (i < AlwaysPresent || field.number == static_cast<std::int32_t>(i));
        const std::string_view name = known ? names[i] : field.name;
        if (name.empty() || !given.insert(name).second) continue;
        comp.attributes.push_back(User(name, field.value));
        Orin::DesignDb::DrawnAttributeInfo& attribute = drawn.emplace_back();
        attribute.name = Stored(name);
        attribute.data.position = field.at;
        attribute.data.style = StyleOf(field.look, field.angle, angle, mirror);
        attribute.data.showName = field.showName;
    }
    comp.drawn.back().attributes = Orin::ListT<Orin::DesignDb::DrawnAttributeInfo>(drawn);
}

void PageBuilder::AddSymbol(const PlacedSymbol& symbol) {
    const DefinitionId definitionId = m_parts.definitions.Of(m_file, symbol);
    const Definition& definition = m_parts.definitions[definitionId];
    CompModel comp;
    if (!symbol.fields.empty()) comp.spec.label = Stored(symbol.fields[0].value);
    comp.spec.name = Stored(definition.cell);
    comp.spec.partition = Stored(definition.library);
    comp.spec.types = definition.power == PowerScope::None ? ECompType::Part : ECompType::Power;
    comp.drawn.push_back(DrawnOn(m_group.spec.index, Placed(symbol.at, symbol.angle, symbol.mirror)));
    // Texts turn with their symbol.
    AddFields(comp, symbol.fields, SymbolFieldNames, symbol.angle, symbol.mirror);
    AddSystem(comp, KicadAttributes::Uuid, symbol.uuid);
    for (const auto& [name, value] : symbol.flags)
        for (const UsualFlag& usual : UsualFlags)
            if (usual.name == name && usual.value != value) AddSystem(comp, name, value);

    const std::string_view value = symbol.fields.size() > 1 ? symbol.fields[1].value : std::string_view();
    WrittenLabel power;
    if (definition.power == PowerScope::Global) power = m_parts.labels.Wide(value, m_file.source, symbol.start);
    if (definition.power == PowerScope::Local) power = m_parts.labels.Local(value, m_file.source, symbol.start);
    bool names = false;
    for (const SymbolPin& pin : definition.pins) {
        const Point at = OnSheet(pin.at, symbol.at, symbol.angle, symbol.mirror);
        Connect(at, AddPin(comp, pin.number));
        if (pin.type != "power_in") continue;
        DraftLabel label;
        label.at = at;
        if (definition.power != PowerScope::None) {
            label.text = power.text;
            label.source = value;
            names = true;
        } else if (pin.hidden) {
            // A power pin that nobody sees connects by its name.
            label.text = m_parts.labels.Wide(pin.name, m_file.source, symbol.start).text;
            label.source = pin.name;
        }
        if (!label.text.empty())
            ConnectLabel(std::move(label), definition.power == PowerScope::Local ? LabelRank::Local : LabelRank::Power,
                         false);
    }
    if (names && definition.power == PowerScope::Global)
        comp.attributes.push_back(User("Global Signal Name", power.text));
    AddComp(std::move(comp), definitionId);
}

void PageBuilder::AddSheet(const SheetSymbol& sheet, const Orin::DesignDb::BlockSpec* block) {
    const Index& group = m_group.spec.index;
    CompModel comp;
    comp.spec.label = Stored(sheet.name);
    comp.spec.partition = Stored(OwnLibrary);
    comp.spec.types = ECompType::Hierarchical;
    comp.spec.name = block != nullptr ? block->name : Stored(sheet.file);
    if (block != nullptr) comp.spec.childBlock = block->index;
    comp.drawn.push_back(DrawnOn(group, Placed(sheet.at, 0, Mirror::None)));
    AddFields(comp, sheet.fields, SheetFieldNames);
    AddSystem(comp, KicadAttributes::Uuid, sheet.uuid);

    Graphic box;
    box.kind = GraphicKind::Rectangle;
    box.points = {{0, 0}, sheet.size};
    box.style = sheet.style;
    std::vector<SymbolPin> drawnPins;
    for (const SheetPin& pin : sheet.pins) {
        const WrittenLabel written = m_parts.labels.Wide(pin.name, m_file.source, pin.start);
        DraftLabel label{0, written.text, pin.name, pin.at, AddPin(comp, written.text), nullptr, written.bus};
        Attributes& attributes = comp.pins.back().attributes;
        attributes.push_back(User(KicadAttributes::Source, pin.name));
        if (!pin.uuid.empty()) attributes.push_back(User(KicadAttributes::Uuid, pin.uuid));
        ConnectLabel(std::move(label), LabelRank::SheetPin, written.bus);
        SymbolPin drawn;
        drawn.number = pin.name;
        drawn.type = pin.shape;
        drawn.at = drawn.inner = {pin.at.x - sheet.at.x, pin.at.y - sheet.at.y};
        drawnPins.push_back(drawn);
    }
    // Sheet symbols differ in their size and pins, so each has a definition of its own.
    const std::string variant = Text::Render(++m_parts.sheetSymbols);
    const DefinitionId definition = m_parts.definitions.OfMark("sheet", variant, [&](Definition& made) {
        made.graphics.push_back(std::move(box));
        made.pins = std::move(drawnPins);
    });
    AddComp(std::move(comp), definition);
}

// Of a sheet symbol whose file became a sheet of this block, the box and its texts stay.
void PageBuilder::AddMergedSheet(const SheetSymbol& sheet) {
    Graphic box;
    box.kind = GraphicKind::Rectangle;
    box.points = {sheet.at, {sheet.at.x + sheet.size.x, sheet.at.y + sheet.size.y}};
    box.style = sheet.style;
    Draw(box, Axis::Down, m_parts.indexes, *m_group.view);
    for (const Field& field : sheet.fields)
        AddText(field.value, field.at, StyleOf(field.look, field.angle), m_parts.indexes, *m_group.view);
}

// How marks that always look alike are drawn.
struct MarkLine {
    std::string_view cell;
    Point from;
    Point to;
};
constexpr MarkLine MarkLines[] = {{"bus_entry", {0, 0}, {2540000, 2540000}},
                                  {"no_connect", {-635000, -635000}, {635000, 635000}},
                                  {"no_connect", {-635000, 635000}, {635000, -635000}}};

// A component for a mark of the schematic editor's own, whose definition has one pin at its place when it connects.
CompModel& PageBuilder::AddMark(const std::string& cell, const std::string& variant, const Point& at, int angle) {
    CompModel comp;
    comp.spec.name = Stored(cell);
    comp.spec.partition = Stored(OwnLibrary);
    comp.drawn.push_back(DrawnOn(m_group.spec.index, Placed(at, angle, Mirror::None)));
    const DefinitionId definition = m_parts.definitions.OfMark(cell, variant, [&cell](Definition& made) {
        SymbolPin pin;
        pin.number = "1";
        for (const MarkLine& line : MarkLines) {
            if (line.cell != cell) continue;
            Graphic& graphic = made.graphics.emplace_back();
            graphic.points = {line.from, line.to};
        }
        if (cell != "no_connect") made.pins.push_back(pin);
    });
    return AddComp(std::move(comp), definition);
}

struct LabelMark {
    LabelType type;
    const char* cell;
    LabelRank rank;
};
constexpr LabelMark LabelMarks[] = {{LabelType::Global, "global_label", LabelRank::Global},
                                    {LabelType::Hierarchical, "hierarchical_label", LabelRank::Hierarchical}};

void PageBuilder::AddLabel(const Label& label) {
    DraftLabel draft;
    draft.source = label.text;
    draft.at = label.at;
    if (label.type == LabelType::Local) {
        WrittenLabel written = m_parts.labels.Local(label.text, m_file.source, label.start);
        draft.text = std::move(written.text);
        draft.local = &label;
        return ConnectLabel(std::move(draft), LabelRank::Local, written.bus);
    }
    const std::string shape = label.shape.empty() ? "input" : std::string(label.shape);
    if (label.type == LabelType::Directive) {
        CompModel& comp = AddMark("directive_label", shape, label.at, label.angle);
        comp.spec.label = Stored(label.text);
        AddFields(comp, label.fields, {});
        AddSystem(comp, KicadAttributes::Uuid, label.uuid);
        return;
    }
    for (const LabelMark& mark : LabelMarks) {
        if (mark.type != label.type) continue;
        WrittenLabel written = m_parts.labels.Wide(label.text, m_file.source, label.start);
        CompModel& comp = AddMark(mark.cell, shape, label.at, label.angle);
        comp.spec.label = Stored(written.text);
        comp.spec.types = ECompType::Connector;
        AddFields(comp, label.fields, {});
        comp.drawn.back().label = Orin::LabelDataQuill{0, label.at, StyleOf(label.look, label.angle)};
        AddSystem(comp, KicadAttributes::Source, label.text);
        AddSystem(comp, KicadAttributes::Uuid, label.uuid);
        draft.pin = AddPin(comp, "1");
        draft.text = std::move(written.text);
        return ConnectLabel(std::move(draft), mark.rank, written.bus);
    }
}

// An entry leads from its place to the opposite corner of its size, which tells where it points.
void PageBuilder::AddEntry(const EntryMark& entry) {
    const int angle = entry.size.x >= 0 ? (entry.size.y >= 0 ? 0 : 90) : (entry.size.y >= 0 ? 270 : 180);
    const std::size_t position = m_draft.model.comps.size();
    CompModel& comp = AddMark("bus_entry", "1", entry.at, angle);
    comp.spec.types = ECompType::Ripper;
    AddSystem(comp, KicadAttributes::Uuid, entry.uuid);
    static_cast<void>(AddPin(comp, "1"));
    const Point end{entry.at.x + entry.size.x, entry.at.y + entry.size.y};
    m_draft.geometry[m_page].entries.push_back({static_cast<ItemId>(m_draft.entries.size()), entry.at, end});
    m_draft.entries.push_back({m_page, position, entry.at, end});
}

void PageBuilder::AddNoConnect(const NoConnect& mark) {
    CompModel& comp = AddMark("no_connect", "1", mark.at, 0);
    AddSystem(comp, KicadAttributes::Uuid, mark.uuid);
}

void PageBuilder::AddWire(const Wire& wire) {
    for (std::size_t i = 1; i < wire.points.size(); ++i) {
        const Point& from = wire.points[i - 1];
        const Point& to = wire.points[i];
        m_draft.geometry[m_page].segments.push_back({static_cast<ItemId>(m_draft.segments.size()), from, to, wire.bus});
        m_draft.segments.push_back({m_page, from, to, &wire});
    }
}

void PageBuilder::AddJunction(const Point& at) {
    m_draft.geometry[m_page].junctions.push_back({static_cast<ItemId>(m_draft.junctions.size()), at});
    m_draft.junctions.push_back({m_page, at});
}

}  // namespace

void AddTitles(const Schematic& schematic, Attributes& attributes) {
    for (const TitleName& title : TitleNames)
        for (const auto& [entry, value] : schematic.titles)
            if (entry == title.entry) {
                attributes.push_back(User(title.name, value));
                break;
            }
}

BuiltPage BuildPage(SchematicFile& file, std::string_view name, bool numbered, const std::vector<SheetTarget>& targets,
                    BlockDraft& draft, DesignParts& parts) {
    return PageBuilder(file, draft, parts).Build(name, numbered, targets);
}

}  // namespace Quill::Interchange::Kicad
