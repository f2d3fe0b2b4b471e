#include "interchange/detail/kicad/design_builder.h"

#include <set>

#include "interchange/detail/kicad/block_plan.h"
#include "interchange/detail/kicad/page_builder.h"
#include "interchange/detail/kicad/project_file.h"
#include "interchange/project_data.h"
#include "properties/property_mangler.h"
#include "text/number.h"

namespace Quill::Interchange::Kicad {

namespace {

using DataModel::PropertyType;
using Orin::EObjectType;
using Orin::Index;

class Builder {
public:
    Builder(Hierarchy& hierarchy, const KicadOptions& options, std::vector<KicadMessage>& warnings)
        : m_hierarchy(hierarchy),
          m_places(hierarchy),
          m_numbers(FindPageNumbers(hierarchy, m_places)),
          m_plan(PlanBlocks(hierarchy, m_numbers, options.mergeFlatSheets)),
          m_labels(hierarchy, ReadProjectAliases(hierarchy, warnings), warnings),
          m_definitions(warnings),
          m_pages(hierarchy.files.size()) {}

    DesignModel Build();

private:
    void StartBlocks(const Orin::String& rootName);
    void BuildBlock(std::size_t number);
    std::vector<SheetTarget> TargetsOf(FileId file) const;

    void AddOccurrences();
    void AddRootInstances();
    void AddOccurrence(CompModel& comp, const FilePlace& at, Attributes attributes);
    Indexes PathOf(const FilePlace& place) const;
    CompModel& SymbolOf(FileId file, std::size_t symbol) {
        return m_drafts[m_plan.blockOf[file]].model.comps[m_pages[file].firstSymbol + symbol];
    }

    Hierarchy& m_hierarchy;
    FilePlaces m_places;
    const PageNumbers m_numbers;
    const BlockPlan m_plan;
    LabelWriter m_labels;
    Definitions m_definitions;
    IndexCounter m_indexes;
    DesignParts m_parts{m_labels, m_definitions, m_indexes};
    std::vector<BlockDraft> m_drafts;
    std::vector<BuiltPage> m_pages;  // by file
    Index m_config;
};

DesignModel Builder::Build() {
    DesignModel design;
    design.name = Stored(m_hierarchy.design);
    m_config = m_indexes.Next(EObjectType::Config);
    StartBlocks(design.name);
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

void Builder::StartBlocks(const Orin::String& rootName) {
    for (const PlannedBlock& block : m_plan.blocks) {
        Orin::DesignDb::BlockSpec& spec = m_drafts.emplace_back().model.spec;
        const FileId first = block.pages.front().file;
        spec.index = m_indexes.Next(EObjectType::Block);
        spec.name = first == 0 ? rootName : Stored(m_hierarchy.files[first]->name);
        spec.types = Orin::BlockTypes(Orin::EBlockType::Schematic) | Orin::EBlockType::Drawn;
    }
}

std::vector<SheetTarget> Builder::TargetsOf(FileId file) const {
    std::vector<SheetTarget> targets;
    const std::vector<std::optional<FileId>>& children = m_hierarchy.files[file]->children;
    for (std::uint32_t sheet = 0; sheet < children.size(); ++sheet) {
        SheetTarget& target = targets.emplace_back();
        target.merged = m_plan.IsMerged(m_hierarchy, {file, sheet});
        if (children[sheet]) target.block = &m_drafts[m_plan.blockOf[*children[sheet]]].model.spec;
    }
    return targets;
}

void Builder::BuildBlock(std::size_t number) {
    const PlannedBlock& block = m_plan.blocks[number];
    BlockDraft& draft = m_drafts[number];
    m_labels.StartBlock(block);
    RefuseCollisions(m_hierarchy, block, m_labels);
    draft.model.groups.reserve(block.pages.size());
    for (const PlannedPage& page : block.pages)
        m_pages[page.file] = BuildPage(*m_hierarchy.files[page.file], page.name, !m_numbers[page.file].empty(),
                                       TargetsOf(page.file), draft, m_parts);
    BuildNets(draft, m_indexes);
}

// The hierarchical components on the way to a place; sheets that were merged are none.
Indexes Builder::PathOf(const FilePlace& place) const {
    Indexes path;
    for (const SheetStep& step : place.steps)
        if (const Index& comp = m_pages[step.file].sheets[step.sheet]; !comp.IsEmpty()) path.push_back(comp);
    return path;
}

void Builder::AddOccurrence(CompModel& comp, const FilePlace& at, Attributes attributes) {
    comp.occurrences.push_back({m_config, PathOf(at), std::move(attributes)});
}

Attributes InstanceAttributes(const Instance& instance) {
    Attributes attributes;
    if (!instance.text.empty()) attributes.push_back({"REFDES", Stored(instance.text)});
    if (instance.unit) attributes.push_back({"Unit", Stored(Text::Render(*instance.unit))});
    return attributes;
}

void Builder::AddOccurrences() {
    const Orin::String printOrder = Utils::CPropertyMangler::Mangle("@PRINTORDER", PropertyType::NotCommonProperty);
    for (FileId file = 0; file < m_hierarchy.files.size(); ++file) {
        for (const auto& [place, page] : m_numbers[file])
            AddOccurrence(m_drafts[m_plan.blockOf[file]].model.comps[*m_pages[file].border], *place,
                          {{printOrder, Stored(page)}});
        const std::vector<PlacedSymbol>& symbols = m_hierarchy.files[file]->content.symbols;
        for (std::size_t i = 0; i < symbols.size(); ++i)
            for (const HeldInstance& held : HoldingInstances(symbols[i].instances, m_hierarchy.design, file, m_places))
                if (Attributes attributes = InstanceAttributes(*held.instance); !attributes.empty())
                    AddOccurrence(SymbolOf(file, i), *held.place, std::move(attributes));
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
        CompModel& comp = SymbolOf(place->file, symbol->second);
        Attributes attributes = InstanceAttributes(instance);
        if (!attributes.empty() && entered.emplace(comp.spec.index, place).second)
            AddOccurrence(comp, *place, std::move(attributes));
    }
}

}  // namespace

DesignModel BuildDesign(Hierarchy& hierarchy, const KicadOptions& options, std::vector<KicadMessage>& warnings) {
    return Builder(hierarchy, options, warnings).Build();
}

}  // namespace Quill::Interchange::Kicad
