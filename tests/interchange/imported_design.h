// A design that a test imported, and short ways to ask it.
#pragma once

#include "interchange/kicad_import.h"
#include "pages/page_traverser.h"
#include "tests/support/memory_design.h"

namespace Quill::Interchange::Testing {

struct ImportedDesign : Tests::MemoryDesign {
    // The fault; "" when there is none.
    std::string Import(const std::filesystem::path& root, const KicadOptions& options = {}) {
        const auto fault = ImportKicad(root, options, snapshot, name, warnings);
        return fault ? fault->Message() : "";
    }

    std::vector<PageID> Pages(EAlgorithm algorithm) const {
        PageTraverser traverser(snapshot, std::string(name.View()), EViewMode::Logical);
        traverser.setAlgorithm(algorithm, ECompAlgorithm::Default);
        traverser.update();
        std::vector<PageID> pages;
        for (PageID page = traverser.firstPage(); !page.group.IsEmpty(); page = traverser.nextPage(page))
            pages.push_back(page);
        return pages;
    }

    std::vector<KicadMessage> warnings;
};

// The attribute's value; "" when there is none.
template <class Object, class... Family>
std::string AttributeOf(const Object& object, const char* name, Family... family) {
    Orin::String value;
    return object.GetAttribute(name, value, family...) ? std::string(value.View()) : "";
}

template <class Object>
std::string LabelOf(const Object& object) {
    Orin::String label;
    EXPECT_TRUE(object.GetLabel(label));
    return std::string(label.View());
}

// A page of the walk, with the labels of the components that lead to it and the number that it bears.
struct OpenPage {
    OpenPage(const ImportedDesign& design, const PageID& page) {
        Orin::ListT<Orin::Index> steps;
        EXPECT_TRUE(design.objects.GetPath(path, page.path) && path->GetBlock(block) &&
                    block->GetGroup(group, page.group) && path->GetListHierarchyIndexes(steps) &&
                    group->GetListObjects(members));
        for (const Orin::Index& step : steps) {
            Orin::ContainerT<const Orin::IComp> comp;
            EXPECT_TRUE(design.objects.GetComp(comp, step));
            names.push_back(LabelOf(*comp));
        }
        for (const Orin::Index& member : members) {
            Orin::ContainerT<const Orin::IComp> comp;
            if (path->GetCompInPath(comp, member))
                number += AttributeOf(*comp, "$$NotCommonProperty_@PRINTORDER", Orin::EAttributeType::User);
        }
    }

    Orin::ContainerT<const Orin::IPath> path;
    Orin::ContainerT<const Orin::IBlock> block;
    Orin::ContainerT<const Orin::IGroup> group;
    Orin::ListT<Orin::Index> members;
    std::vector<std::string> names;
    std::string number;
};

}  // namespace Quill::Interchange::Testing
