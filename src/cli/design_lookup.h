// What the commands ask a design for: names, labels, and objects by name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "orin/orin.h"

namespace Quill::Cli {

// Throws a CommandError that says what failed.
void Need(const Orin::Result& result);

// Empty when the object has none.
std::string NameOf(const Orin::IObject& object);

template <class T>
std::string LabelOf(const T& object) {
    Orin::String label;
    return object.GetLabel(label) ? std::string(label.View()) : std::string();
}

template <class T>
Orin::Index IndexOf(const T& object) {
    Orin::Index index;
    Need(object.GetIndex(index));
    return index;
}

// The groups that are sheets.
Orin::GroupTypes SheetTypes();

// The schematic blocks in the order of the design.
std::vector<Orin::ContainerT<const Orin::IBlock>> AllBlocks(const Orin::ISnapshot& snapshot);

// Those of that name. Throws a CommandError when there is none.
std::vector<Orin::ContainerT<const Orin::IBlock>> FindBlocks(const Orin::ISnapshot& snapshot, const std::string& name);

// The only schematic block of that name. Throws a CommandError when there is none, or several.
Orin::ContainerT<const Orin::IBlock> FindBlock(const Orin::ISnapshot& snapshot, const std::string& name);

// The only sheet of the block with that name. Throws a CommandError when there is none, or several.
Orin::ContainerT<const Orin::IGroup> FindSheet(const Orin::IBlock& block, const std::string& name);

// Whether the sheet's own mark excludes it from printing.
bool IsMarkedExcluded(const Orin::IGroup& sheet);

// The labels of the hierarchical components that lead to the place, root first.
std::vector<std::string> LabelsOnTheWay(const Orin::ISnapshot& snapshot, const Orin::ListT<Orin::Index>& hierarchy);

// The lines of an attribute that holds several, without their line feeds.
std::vector<std::string> Lines(std::string_view text);

// The labels of LabelsOnTheWay as one text for people: "/" at the root, "/CH1/IN" below it.
std::string WayText(const std::vector<std::string>& labels);

}  // namespace Quill::Cli
