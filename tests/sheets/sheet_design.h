// A design of one block with sheets, for tests and benchmarks.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "designdb/database.h"
#include "designdb/editor.h"
#include "sheets/sheet_range.h"

namespace Quill::Testing {

inline void Require(const Orin::Result& result) {
    if (!result) throw std::runtime_error(static_cast<const char*>(result.GetDescription()));
}

// `order` and `id` as they are stored; nothing is stored for an empty one.
struct SheetSpec {
    std::string name, order = "", id = "";
    Orin::EGroupType type = Orin::EGroupType::Sheet;
};

struct SheetDesign {
    explicit SheetDesign(const std::vector<SheetSpec>& specs) {
        static int projects = 0;
        Require(Orin::DesignDb::Database::Create(database, std::to_string(++projects).c_str()));
        client = database.Connect("test");
        Require(client->GetSnapshotByName(snapshot, "QUILL"));
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

    template <class T>
    static Orin::Index IndexOf(const Orin::ContainerT<T>& object) {
        Orin::Index index;
        Require(object->GetIndex(index));
        return index;
    }

    Orin::DesignDb::Database database;
    std::unique_ptr<Orin::OrinPI> client;
    SheetRange::Snapshot snapshot;
    Orin::DesignDb::Editor editor;
    SheetRange::Block block;
    std::vector<SheetRange::Sheet> sheets;  // in the order of their making
};

}  // namespace Quill::Testing
