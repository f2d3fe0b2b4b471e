#include "interchange/detail/kicad/design_builder.h"

#include <set>

#include "interchange/detail/kicad/block_draft.h"
#include "interchange/detail/kicad/block_plan.h"
#include "interchange/detail/kicad/geometry.h"
#include "interchange/detail/kicad/label_writer.h"
#include "interchange/detail/kicad/project_file.h"
#include "interchange/project_data.h"
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

Orin::Attribute Mangled(const char* key, PropertyType type, std::string_view value) {
    return {Utils::CPropertyMangler::Mangle(key, type), Stored(value), EAttributeType::User};
}

Orin::DesignDb::DrawingInfo DrawnOn(const Index& group, const Orin::CompDataQuill& body) {
    return {group, body, {}, {}};
}

// How a title block's entries are called in designs.
struct TitleName {
    std::string_view entry;
    const char* name;
};
constexpr TitleName TitleNames[] = {{"title", "TITLE"}, {"date", "DATE"}, {"rev", "REVISION"}, {"company", "COMPANY"}};

void AddTitles(const Schematic& schematic, Attributes& attributes) {
    for (const TitleName& title : TitleNames)
        for (const auto& [entry, value] : schematic.titles)
            if (entry == title.entry) {
                attributes.push_back(User(title.name, value));
                break;
            }
}

// Properties are known by where they stand, since their names were translated once.
constexpr std::string_view SymbolFieldNames[] = {"Reference", "Value", "Footprint", "Datasheet"};
constexpr std::string_view SheetFieldNames[] = {"Sheetname", "Sheetfile"};

// What a symbol is when its file does not say otherwise; only the exceptions are kept.
struct UsualFlag {
    std::string_view name;
    std::string_view value;
};
constexpr UsualFlag UsualFlags[] = {
    {"in_bom", "yes"}, {"on_board", "yes"}, {"dnp", "no"}, {"exclude_from_sim", "no"}, {"in_pos_files", "yes"}};

class Builder {
public:
    Builder(Hierarchy& hierarchy, const KicadOptions& options, std::vector<KicadMessage>& warnings)
        : m_hierarchy(hierarchy),
          m_places(hierarchy),
          m_numbers(FindPageNumbers(hierarchy, m_places)),
          m_plan(PlanBlocks(hierarchy, m_numbers, options.mergeFlatSheets)),
          m_labels(hierarchy, ReadProjectAliases(hierarchy, warnings), warnings),
          m_definitions(warnings),
          m_sheets(hierarchy.files.size()),
          m_symbols(hierarchy.files.size()),
          m_borders(hierarchy.files.size()) {}

    DesignModel Build();

private:
    // A component by its place in the model.
    struct CompPlace {
        std::size_t block = 0;
        std::size_t comp = 0;
    };

    void BuildBlock(std::size_t number);
    void BuildPage(std::size_t block, std::size_t pageNumber);
    void AddBorder(FileId file, const Index& group, std::size_t block);
    void AddSymbol(SchematicFile& file, const PlacedSymbol& symbol);
    void AddSheet(SchematicFile& file, const SheetSymbol& sheet, std::optional<FileId> child);
    void AddMergedSheet(const SheetSymbol& sheet);
    void AddLabel(SchematicFile& file, const Label& label);
    void AddEntry(const EntryMark& entry);
    void AddNoConnect(const NoConnect& mark);
    void AddWire(const Wire& wire);
    CompModel& AddComp(CompModel comp, DefinitionId definition);
    CompModel& AddMark(const std::string& cell, std::string variant, const Point& at, int angle);
    template <std::size_t Count>
    void AddFields(CompModel& comp, const std::vector<Field>& fields, const std::string_view (&names)[Count],
                   int angle);
    Index AddPin(CompModel& comp, std::string_view label);
    void Connect(const Point& at, const Index& pin);
    void ConnectLabel(DraftLabel label, LabelRank rank, bool bus);

    void AddOccurrences();
    void AddRootInstances();
    void AddOccurrence(const CompPlace& place, const FilePlace& at, Attributes attributes);
    Indexes PathOf(const FilePlace& place) const;

    Hierarchy& m_hierarchy;
    FilePlaces m_places;
    const PageNumbers m_numbers;
    const BlockPlan m_plan;
    LabelWriter m_labels;
    Definitions m_definitions;
    IndexCounter m_indexes;
    std::vector<BlockDraft> m_drafts;
    std::vector<std::vector<Index>> m_sheets;         // by file and sheet symbol: its component; empty when merged
    std::vector<std::vector<CompPlace>> m_symbols;    // by file and symbol
    std::vector<std::optional<CompPlace>> m_borders;  // by file
    Index m_config;
    // The page that is built.
    BlockDraft* m_draft = nullptr;
    std::size_t m_page = 0;
    GroupModel* m_group = nullptr;
    unsigned m_sheetSymbols = 0;
};

DesignModel Builder::Build() {
    DesignModel design;
    design.name = Stored(m_hierarchy.design);
    m_config = m_indexes.Next(EObjectType::Config);
    for (std::size_t i = 0; i < m_plan.blocks.size(); ++i) {
        BlockDraft& draft = m_drafts.emplace_back();
        draft.model.spec.index = m_indexes.Next(EObjectType::Block);
        const FileId first = m_plan.blocks[i].pages.front().file;
        draft.model.spec.name = first == 0 ? design.name : Stored(m_hierarchy.files[first]->name);
        draft.model.spec.types = Orin::BlockTypes(Orin::EBlockType::Schematic) | Orin::EBlockType::Drawn;
    }
    for (std::size_t i = 0; i < m_drafts.size(); ++i)
        BuildBlock(i);
    AddOccurrences();
    std::vector<BlockModel> libraries;
    const std::vector<Index> definitions = m_definitions.Build(m_indexes, libraries);
    for (BlockDraft& draft : m_drafts) {
        for (std::size_t i = 0; i < draft.definitions.size(); ++i)
            if (draft.definitions[i] != NoDefinition)
                draft.model.comps[i].spec.definition = definitions[draft.definitions[i]];
        design.blocks.push_back(std::move(draft.model));
    }
    for (BlockModel& library : libraries)
        design.blocks.push_back(std::move(library));
    ConfigModel config;
    config.spec = {design.name, design.blocks.front().spec.index, m_config};
    design.configs.push_back(std::move(config));
    AddTitles(m_hierarchy.files.front()->content, design.attributes);
    const std::map<std::string, std::string> contents = m_labels.BusContents();
    for (Orin::Attribute& attribute : ProjectAttributes("[]", contents))
        design.attributes.push_back(std::move(attribute));
    return design;
}

void Builder::BuildBlock(std::size_t number) {
    m_draft = &m_drafts[number];
    const PlannedBlock& block = m_plan.blocks[number];
    m_labels.StartBlock(block);
    m_draft->geometry.resize(block.pages.size());
    m_draft->model.groups.reserve(block.pages.size());
    for (std::size_t page = 0; page < block.pages.size(); ++page)
        BuildPage(number, page);
    BuildNets(*m_draft, m_indexes);
}

void Builder::BuildPage(std::size_t block, std::size_t pageNumber) {
    const PlannedPage& page = m_plan.blocks[block].pages[pageNumber];
    SchematicFile& file = *m_hierarchy.files[page.file];
    m_page = pageNumber;
    m_group = &m_draft->model.groups.emplace_back();
    m_group->spec.name = Stored(page.name);
    m_group->spec.index = m_indexes.Next(EObjectType::Group);
    m_group->view = std::make_unique<ViewModel>();
    const std::string order = Text::Render(pageNumber + 1);
    m_group->attributes.push_back(Mangled("ID", PropertyType::Internal, order));
    m_group->attributes.push_back(Mangled("CUSTOM_ORDER", PropertyType::Internal, order));
    if (!file.content.uuid.empty()) m_group->attributes.push_back(User(KicadAttributes::Uuid, file.content.uuid));
    AddTitles(file.content, m_group->attributes);

    AddBorder(page.file, m_group->spec.index, block);
    for (const PlacedSymbol& symbol : file.content.symbols) {
        m_symbols[page.file].push_back({block, m_draft->model.comps.size()});
        AddSymbol(file, symbol);
    }
    for (std::uint32_t i = 0; i < file.content.sheets.size(); ++i) {
        const SheetSymbol& sheet = file.content.sheets[i];
        if (m_plan.IsMerged(m_hierarchy, {page.file, i})) {
            m_sheets[page.file].emplace_back();
            AddMergedSheet(sheet);
        } else {
            AddSheet(file, sheet, file.children[i]);
            m_sheets[page.file].push_back(m_draft->model.comps.back().spec.index);
        }
    }
    for (const Label& label : file.content.labels)
        AddLabel(file, label);
    for (const EntryMark& entry : file.content.entries)
        AddEntry(entry);
    for (const NoConnect& mark : file.content.noConnects)
        AddNoConnect(mark);
    for (const Wire& wire : file.content.wires)
        AddWire(wire);
    for (const Point& at : file.content.junctions) {
        m_draft->geometry[m_page].junctions.push_back({static_cast<ItemId>(m_draft->junctions.size()), at});
        m_draft->junctions.push_back({m_page, at});
    }
    for (const Graphic& graphic : file.content.graphics)
        Draw(graphic, Axis::Down, m_indexes, *m_group->view);
}

CompModel& Builder::AddComp(CompModel comp, DefinitionId definition) {
    comp.spec.index = m_indexes.Next(EObjectType::Comp);
    m_group->members.push_back(comp.spec.index);
    m_draft->definitions.push_back(definition);
    return m_draft->model.comps.emplace_back(std::move(comp));
}

// The frame of a page, which carries its number at each place where it has one.
void Builder::AddBorder(FileId file, const Index& group, std::size_t block) {
    if (m_numbers[file].empty()) return;
    const std::string_view paper = m_hierarchy.files[file]->content.paper;
    m_borders[file] = CompPlace{block, m_draft->model.comps.size()};
    CompModel border;
    border.spec.label = "FRAME";
    border.spec.name = Stored(paper);
    border.spec.partition = Stored(OwnLibrary);
    border.spec.types = Orin::CompTypes(ECompType::Border) | ECompType::Titled;
    border.drawn.push_back(DrawnOn(group, {}));
    AddComp(std::move(border), NoDefinition);
}

Index Builder::AddPin(CompModel& comp, std::string_view label) {
    PinModel& pin = comp.pins.emplace_back();
    pin.spec.label = Stored(label);
    return pin.spec.index = m_indexes.Next(EObjectType::Pin);
}

void Builder::Connect(const Point& at, const Index& pin) {
    m_draft->geometry[m_page].pins.push_back({static_cast<ItemId>(m_draft->pins.size()), at});
    m_draft->pins.push_back({m_page, at, pin});
}

void Builder::ConnectLabel(DraftLabel label, LabelRank rank, bool bus) {
    label.page = m_page;
    m_draft->geometry[m_page].labels.push_back(
        {static_cast<ItemId>(m_draft->labels.size()), label.at, label.text, rank, bus});
    m_draft->labels.push_back(std::move(label));
}

template <std::size_t Count>
void Builder::AddFields(CompModel& comp, const std::vector<Field>& fields, const std::string_view (&names)[Count],
                        int angle) {
    std::set<std::string_view> known;
    std::vector<Orin::DesignDb::DrawnAttributeInfo> drawn;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Field& field = fields[i];
        const std::string_view name = i < Count ? names[i] : field.name;
        if (name.empty() || !known.insert(name).second) continue;
        comp.attributes.push_back(User(name, field.value));
        Orin::DesignDb::DrawnAttributeInfo& attribute = drawn.emplace_back();
        attribute.name = Stored(name);
        attribute.data.position = field.at;
        attribute.data.style = StyleOf(field.look, field.angle + angle);
        attribute.data.showName = field.showName;
    }
    comp.drawn.back().attributes = Orin::ListT<Orin::DesignDb::DrawnAttributeInfo>(drawn);
}

void Builder::AddSymbol(SchematicFile& file, const PlacedSymbol& symbol) {
    const DefinitionId definitionId = m_definitions.Of(file, symbol);
    const Definition& definition = m_definitions[definitionId];
    CompModel comp;
    if (!symbol.fields.empty()) comp.spec.label = Stored(symbol.fields[0].value);
    comp.spec.name = Stored(definition.cell);
    comp.spec.partition = Stored(definition.library);
    comp.spec.types = definition.power == PowerScope::None ? ECompType::Part : ECompType::Power;
    comp.drawn.push_back(DrawnOn(m_group->spec.index, Placed(symbol.at, symbol.angle, symbol.mirror)));
    // Texts turn with their symbol.
    AddFields(comp, symbol.fields, SymbolFieldNames, symbol.angle);
    AddSystem(comp, KicadAttributes::Uuid, symbol.uuid);
    for (const auto& [name, value] : symbol.flags)
        for (const UsualFlag& usual : UsualFlags)
            if (usual.name == name && usual.value != value) AddSystem(comp, name, value);

    const std::string_view value = symbol.fields.size() > 1 ? symbol.fields[1].value : std::string_view();
    WrittenLabel power;
    if (definition.power == PowerScope::Global) power = m_labels.Wide(value, file.source, symbol.start);
    if (definition.power == PowerScope::Local) power = m_labels.Local(value, file.source, symbol.start);
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
            label.text = m_labels.Wide(pin.name, file.source, symbol.start).text;
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

void Builder::AddSheet(SchematicFile& file, const SheetSymbol& sheet, std::optional<FileId> child) {
    const Index& group = m_group->spec.index;
    CompModel comp;
    comp.spec.label = Stored(sheet.name);
    comp.spec.partition = Stored(OwnLibrary);
    comp.spec.types = ECompType::Hierarchical;
    if (child) {
        const BlockModel& block = m_drafts[m_plan.blockOf[*child]].model;
        comp.spec.childBlock = block.spec.index;
        comp.spec.name = block.spec.name;
    } else {
        comp.spec.name = Stored(sheet.file);
    }
    comp.drawn.push_back(DrawnOn(group, Placed(sheet.at, 0, Mirror::None)));
    AddFields(comp, sheet.fields, SheetFieldNames, 0);
    AddSystem(comp, KicadAttributes::Uuid, sheet.uuid);

    Graphic box;
    box.kind = GraphicKind::Rectangle;
    box.points = {{0, 0}, sheet.size};
    box.style = sheet.style;
    std::vector<SymbolPin> drawnPins;
    for (const SheetPin& pin : sheet.pins) {
        const WrittenLabel written = m_labels.Wide(pin.name, file.source, pin.start);
        DraftLabel label{0, written.text, pin.name, pin.at, AddPin(comp, written.text), nullptr};
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
    const std::string variant = Text::Render(++m_sheetSymbols);
    const DefinitionId definition = m_definitions.OfMark("sheet", variant, [&](Definition& made) {
        made.graphics.push_back(std::move(box));
        made.pins = std::move(drawnPins);
    });
    AddComp(std::move(comp), definition);
}

// Of a sheet symbol whose file became a sheet of this block, the box and its texts stay.
void Builder::AddMergedSheet(const SheetSymbol& sheet) {
    Graphic box;
    box.kind = GraphicKind::Rectangle;
    box.points = {sheet.at, {sheet.at.x + sheet.size.x, sheet.at.y + sheet.size.y}};
    box.style = sheet.style;
    Draw(box, Axis::Down, m_indexes, *m_group->view);
    for (const Field& field : sheet.fields)
        AddText(field.value, field.at, StyleOf(field.look, field.angle), m_indexes, *m_group->view);
}

// A component for a mark of the schematic editor's own, whose definition has one pin at its place.
CompModel& Builder::AddMark(const std::string& cell, std::string variant, const Point& at, int angle) {
    CompModel comp;
    comp.spec.name = Stored(cell);
    comp.spec.partition = Stored(OwnLibrary);
    comp.drawn.push_back(DrawnOn(m_group->spec.index, Placed(at, angle, Mirror::None)));
    const DefinitionId definition = m_definitions.OfMark(cell, variant, [](Definition& made) {
        SymbolPin pin;
        pin.number = "1";
        made.pins.push_back(pin);
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
constexpr std::string_view NoNames[] = {{}};

void Builder::AddLabel(SchematicFile& file, const Label& label) {
    DraftLabel draft;
    draft.source = label.text;
    draft.at = label.at;
    if (label.type == LabelType::Local) {
        WrittenLabel written = m_labels.Local(label.text, file.source, label.start);
        draft.text = std::move(written.text);
        draft.local = &label;
        return ConnectLabel(std::move(draft), LabelRank::Local, written.bus);
    }
    const std::string shape = label.shape.empty() ? "input" : std::string(label.shape);
    if (label.type == LabelType::Directive) {
        CompModel& comp = AddMark("directive_label", shape, label.at, label.angle);
        comp.spec.label = Stored(label.text);
        AddFields(comp, label.fields, NoNames, 0);
        AddSystem(comp, KicadAttributes::Uuid, label.uuid);
        return;
    }
    for (const LabelMark& mark : LabelMarks) {
        if (mark.type != label.type) continue;
        WrittenLabel written = m_labels.Wide(label.text, file.source, label.start);
        CompModel& comp = AddMark(mark.cell, shape, label.at, label.angle);
        comp.spec.label = Stored(written.text);
        comp.spec.types = ECompType::Connector;
        AddFields(comp, label.fields, NoNames, 0);
        comp.drawn.back().label = Orin::LabelDataQuill{0, label.at, StyleOf(label.look, label.angle)};
        AddSystem(comp, KicadAttributes::Source, label.text);
        AddSystem(comp, KicadAttributes::Uuid, label.uuid);
        draft.pin = AddPin(comp, "1");
        draft.text = std::move(written.text);
        ConnectLabel(std::move(draft), mark.rank, written.bus);
    }
}

// An entry leads from its place to the opposite corner of its size, which tells where it points.
void Builder::AddEntry(const EntryMark& entry) {
    const int angle = entry.size.x >= 0 ? (entry.size.y >= 0 ? 0 : 90) : (entry.size.y >= 0 ? 270 : 180);
    const std::size_t position = m_draft->model.comps.size();
    CompModel& comp = AddMark("bus_entry", "1", entry.at, angle);
    comp.spec.types = ECompType::Ripper;
    AddSystem(comp, KicadAttributes::Uuid, entry.uuid);
    static_cast<void>(AddPin(comp, "1"));
    const Point end{entry.at.x + entry.size.x, entry.at.y + entry.size.y};
    m_draft->geometry[m_page].entries.push_back({static_cast<ItemId>(m_draft->entries.size()), entry.at, end});
    m_draft->entries.push_back({m_page, position, entry.at, end});
}

void Builder::AddNoConnect(const NoConnect& mark) {
    CompModel& comp = AddMark("no_connect", "1", mark.at, 0);
    AddSystem(comp, KicadAttributes::Uuid, mark.uuid);
}

void Builder::AddWire(const Wire& wire) {
    for (std::size_t i = 1; i < wire.points.size(); ++i) {
        const Point& from = wire.points[i - 1];
        const Point& to = wire.points[i];
        m_draft->geometry[m_page].segments.push_back(
            {static_cast<ItemId>(m_draft->segments.size()), from, to, wire.bus});
        m_draft->segments.push_back({m_page, from, to, &wire});
    }
}

// The hierarchical components on the way to a place; sheets that were merged are none.
Indexes Builder::PathOf(const FilePlace& place) const {
    Indexes path;
    for (const SheetStep& step : place.steps)
        if (const Index& comp = m_sheets[step.file][step.sheet]; !comp.IsEmpty()) path.push_back(comp);
    return path;
}

void Builder::AddOccurrence(const CompPlace& place, const FilePlace& at, Attributes attributes) {
    m_drafts[place.block].model.comps[place.comp].occurrences.push_back({m_config, PathOf(at), std::move(attributes)});
}

Attributes InstanceAttributes(const Instance& instance) {
    Attributes attributes;
    if (!instance.text.empty()) attributes.push_back(User("REFDES", instance.text));
    if (instance.unit) attributes.push_back(User("Unit", Text::Render(*instance.unit)));
    return attributes;
}

void Builder::AddOccurrences() {
    for (FileId file = 0; file < m_hierarchy.files.size(); ++file) {
        for (const auto& [place, page] : m_numbers[file])
            AddOccurrence(*m_borders[file], *place, {Mangled("@PRINTORDER", PropertyType::NotCommonProperty, page)});
        const std::vector<PlacedSymbol>& symbols = m_hierarchy.files[file]->content.symbols;
        for (std::size_t i = 0; i < symbols.size(); ++i)
            for (const HeldInstance& held : HoldingInstances(symbols[i].instances, m_hierarchy.design, file, m_places))
                if (Attributes attributes = InstanceAttributes(*held.instance); !attributes.empty())
                    AddOccurrence(m_symbols[file][i], *held.place, std::move(attributes));
    }
    AddRootInstances();
}

// The root file names the instances of symbols that have none themselves: the path ends with the symbol.
void Builder::AddRootInstances() {
    std::vector<std::unordered_map<std::string_view, std::size_t>> symbols(m_hierarchy.files.size());
    for (FileId file = 0; file < m_hierarchy.files.size(); ++file) {
        const std::vector<PlacedSymbol>& content = m_hierarchy.files[file]->content.symbols;
        for (std::size_t i = 0; i < content.size(); ++i)
            if (content[i].instances.empty()) symbols[file].emplace(content[i].uuid, i);
    }
    std::set<std::pair<Index, const FilePlace*>> entered;
    for (const Instance& instance : m_hierarchy.files.front()->content.symbolInstances) {
        const std::size_t slash = instance.path.rfind('/');
        if (slash == instance.path.npos) continue;
        const FilePlace* const place = m_places.Find(instance.path.substr(0, slash));
        if (place == nullptr) continue;
        const auto symbol = symbols[place->file].find(instance.path.substr(slash + 1));
        if (symbol == symbols[place->file].end()) continue;
        const CompPlace& comp = m_symbols[place->file][symbol->second];
        Attributes attributes = InstanceAttributes(instance);
        const Index index = m_drafts[comp.block].model.comps[comp.comp].spec.index;
        if (!attributes.empty() && entered.emplace(index, place).second)
            AddOccurrence(comp, *place, std::move(attributes));
    }
}

}  // namespace

DesignModel BuildDesign(Hierarchy& hierarchy, const KicadOptions& options, std::vector<KicadMessage>& warnings) {
    return Builder(hierarchy, options, warnings).Build();
}

}  // namespace Quill::Interchange::Kicad
