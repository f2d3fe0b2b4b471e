#include "cli/design_lookup.h"

#include "cli/command.h"
#include "text/ascii.h"

namespace Quill::Cli {

using Orin::ContainerT;
using Orin::IteratorT;

void Need(const Orin::Result& result) {
    if (!result) throw CommandError(static_cast<const char*>(result.GetDescription()));
}

std::string NameOf(const Orin::IObject& object) {
    Orin::String name;
    return object.GetName(name) ? std::string(name.View()) : std::string();
}

Orin::GroupTypes SheetTypes() {
    return Orin::GroupTypes(Orin::EGroupType::Sheet) | Orin::EGroupType::GeneratedSheet;
}

namespace {

// All of them, or those of that name.
std::vector<ContainerT<const Orin::IBlock>> SchematicBlocks(const Orin::ISnapshot& snapshot, const std::string* name) {
    std::vector<ContainerT<const Orin::IBlock>> found;
    IteratorT<const Orin::IBlock> blocks;
    Need(snapshot.GetIterBlocks(blocks));
    for (; blocks; ++blocks) {
        Orin::BlockTypes types;
        Need(blocks->GetType(types));
        const ContainerT<const Orin::IBlock>& block = blocks;
        if (types.Contains(Orin::EBlockType::Schematic) && (name == nullptr || NameOf(*block) == *name))
            found.push_back(block);
    }
    if (name != nullptr && found.empty()) throw CommandError("The design has no schematic block called " + *name);
    return found;
}

}  // namespace

std::vector<ContainerT<const Orin::IBlock>> AllBlocks(const Orin::ISnapshot& snapshot) {
    return SchematicBlocks(snapshot, nullptr);
}

std::vector<ContainerT<const Orin::IBlock>> FindBlocks(const Orin::ISnapshot& snapshot, const std::string& name) {
    return SchematicBlocks(snapshot, &name);
}

ContainerT<const Orin::IBlock> FindBlock(const Orin::ISnapshot& snapshot, const std::string& name) {
    const std::vector<ContainerT<const Orin::IBlock>> found = FindBlocks(snapshot, name);
    if (found.size() != 1) throw CommandError("The design has several schematic blocks called " + name);
    return found.front();
}

ContainerT<const Orin::IGroup> FindSheet(const Orin::IBlock& block, const std::string& name) {
    Orin::ListT<Orin::GroupInfo> sheets;
    Need(block.GetListOwnedGroups(sheets, SheetTypes()));
    ContainerT<const Orin::IGroup> found;
    for (const Orin::GroupInfo& sheet : std::as_const(sheets)) {
        if (sheet.name.View() != name) continue;
        if (found) throw CommandError("Block " + NameOf(block) + " has several sheets called " + name);
        Need(block.GetGroup(found, sheet.index));
    }
    if (!found) throw CommandError("Block " + NameOf(block) + " has no sheet called " + name);
    return found;
}

bool IsMarkedExcluded(const Orin::IGroup& sheet) {
    Orin::String mark;
    return sheet.GetAttribute("ExcludeFromPrintout", mark) && Text::EqualNoCase(mark.View(), "TRUE");
}

std::vector<std::string> LabelsOnTheWay(const Orin::ISnapshot& snapshot, const Orin::ListT<Orin::Index>& hierarchy) {
    Orin::IUIDManager objects;
    Need(snapshot.GetUIDManager(objects));
    std::vector<std::string> labels;
    for (const Orin::Index& index : hierarchy) {
        ContainerT<const Orin::IComp> comp;
        Need(objects.GetComp(comp, index));
        labels.push_back(LabelOf(*comp));
    }
    return labels;
}

std::vector<std::string> Lines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

std::string WayText(const std::vector<std::string>& labels) {
    if (labels.empty()) return "/";
    std::string text;
    for (const std::string& label : labels)
        text += '/' + label;
    return text;
}

}  // namespace Quill::Cli
