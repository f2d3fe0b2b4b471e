// A design with a hierarchy of blocks, for tests and benchmarks.
#pragma once

#include <string>
#include <vector>

#include "pages/page_traverser.h"
#include "tests/sheets/sheet_design.h"

namespace Quill::Testing {

// The root block, `block`, is that of the configuration "top".
struct PageDesign : SheetDesign {
    explicit PageDesign(const std::vector<SheetSpec>& rootSheets = {}) : SheetDesign(rootSheets) {
        Orin::Index config;
        Require(editor.AddConfig({"top", IndexOf(block)}, config));
        Require(snapshot->GetUIDManager(objects));
    }

    // A component of the block, drawn on the sheet unless that is an empty index.
    Orin::Index AddComp(const SheetRange::Block& owner, const Orin::Index& sheet,
                        const Orin::DesignDb::CompSpec& spec) {
        Orin::Index comp;
        Require(editor.AddComp(IndexOf(owner), spec, comp));
        if (!sheet.IsEmpty()) Require(editor.AddMember(sheet, comp));
        return comp;
    }

    Orin::Index AddChild(const SheetRange::Block& owner, const Orin::Index& sheet, const std::string& label,
                         const SheetRange::Block& child, const Orin::Index& index = {}) {
        return AddComp(owner, sheet,
                       {.label = label.c_str(),
                        .types = Orin::ECompType::Hierarchical,
                        .childBlock = child ? IndexOf(child) : Orin::Index(),
                        .index = index});
    }

    PageTraverser Traverser() const { return PageTraverser(snapshot, "top", EViewMode::Logical); }

    Orin::IUIDManager objects;
};

// A component as stored orders name it.
inline std::string OrderField(const Orin::Index& comp) {
    const std::string number = std::to_string(comp.Value());
    return std::string(20 - number.size(), ' ') + number;
}

// The names of the pages in the order of iteration, with ";" behind each.
inline std::string NamesOf(const PageTraverser& pages) {
    std::string names;
    for (PageID page = pages.firstPage(); !page.IsEmpty(); page = pages.nextPage(page))
        names += page.name + ';';
    return names;
}

}  // namespace Quill::Testing
