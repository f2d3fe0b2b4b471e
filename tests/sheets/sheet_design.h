// A design of one block with sheets, for tests and benchmarks.
#pragma once

#include <string>
#include <vector>

#include "sheets/sheet_range.h"
#include "tests/support/drawn_design.h"

namespace Quill::Testing {

inline void Require(const Orin::Result& result) {
    Tests::Must(result);
}

template <class T>
Orin::Index IndexOf(const Orin::ContainerT<T>& object) {
    Orin::Index index;
    Require(object->GetIndex(index));
    return index;
}

// `order` and `id` as they are stored; nothing is stored for an empty one.
struct SheetSpec {
    std::string name, order = "", id = "";
    Orin::EGroupType type = Orin::EGroupType::Sheet;
};

struct SheetDesign : Tests::DesignClient {
    explicit SheetDesign(const std::vector<SheetSpec>& specs) : DesignClient(Tests::DrawnDesign::NewProject(), "test") {
        Require(Orin::DesignDb::Editor::Open(editor, snapshot));
        block = AddBlock("top");
        for (const SheetSpec& spec : specs)
            sheets.push_back(AddSheet(block, spec));
    }

    SheetRange::Block AddBlock(const char* name) {
        Orin::Index index;
        Require(editor.AddBlock({name, Orin::EBlockType::Schematic}, index));
        SheetRange::Block added;
        Require(snapshot->GetBlock(added, index));
        return added;
    }

    SheetRange::Sheet AddSheet(const SheetRange::Block& owner, const SheetSpec& spec) {
        Orin::Index index;
        Require(editor.AddGroup(IndexOf(owner), {spec.name.c_str(), spec.type}, index));
        if (!spec.order.empty()) Require(editor.SetAttribute(index, "$$Internal_CUSTOM_ORDER", spec.order.c_str()));
        if (!spec.id.empty()) Require(editor.SetAttribute(index, "$$Internal_ID", spec.id.c_str()));
        SheetRange::Sheet sheet;
        Require(owner->GetGroup(sheet, index));
        return sheet;
    }

    Orin::Index SheetOf(std::size_t place) const { return IndexOf(sheets[place]); }

    Orin::DesignDb::Editor editor;
    SheetRange::Block block;
    std::vector<SheetRange::Sheet> sheets;  // in the order of their making
};

}  // namespace Quill::Testing
