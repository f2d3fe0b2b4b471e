// A design that a test imported, and short ways to ask it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "designdb/database.h"
#include "designdb/inspector.h"
#include "interchange/kicad_import.h"
#include "pages/page_traverser.h"

namespace Quill::Interchange::Testing {

// The folder of real designs; a test that finds none there skips itself.
inline std::filesystem::path DesignsFolder() {
    const char* const chosen = std::getenv("QUILL_DESIGNS");
    return chosen != nullptr ? chosen : QUILL_DESIGNS_FOLDER;
}

struct ImportedDesign {
    ImportedDesign() {
        static int s_designs = 0;
        const std::string project = "import " + std::to_string(++s_designs);
        EXPECT_TRUE(Orin::DesignDb::Database::Create(database, project.c_str()));
        client = database.Connect("client");
        EXPECT_TRUE(client->GetSnapshotByName(snapshot, Orin::DesignDb::WorkingSnapshot));
        EXPECT_TRUE(snapshot->GetUIDManager(objects));
        EXPECT_TRUE(Orin::DesignDb::Inspector::Open(inspector, snapshot));
    }

    // The fault; "" when there is none.
    std::string Import(const std::filesystem::path& root, const KicadOptions& options = {}) {
        const auto fault = ImportKicad(root, options, snapshot, name, warnings);
        return fault ? fault->Message() : "";
    }

    bool IsEmpty() const {
        Orin::IteratorT<const Orin::IBlock> blocks;
        Orin::ListAttribute attributes;
        bool active = true;
        EXPECT_TRUE(snapshot->GetIterBlocks(blocks) && snapshot->GetAttributes(attributes) &&
                    snapshot->IsTransactionActive(active));
        return !blocks && attributes.IsEmpty() && !active;
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

    Orin::DesignDb::Database database;
    std::unique_ptr<Orin::OrinPI> client;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    Orin::IUIDManager objects;
    Orin::DesignDb::Inspector inspector;
    Orin::String name = "untouched";
    std::vector<KicadMessage> warnings;
};

// The attribute's value; "" when there is none.
template <class Object>
std::string AttributeOf(const Object& object, const char* name) {
    Orin::String value;
    return object.GetAttribute(name, value) ? std::string(value.View()) : "";
}
inline std::string AttributeOf(const Orin::IComp& comp, const char* name, Orin::EAttributeType type) {
    Orin::String value;
    return comp.GetAttribute(name, value, type) ? std::string(value.View()) : "";
}

template <class Object>
std::string LabelOf(const Object& object) {
    Orin::String label;
    EXPECT_TRUE(object.GetLabel(label));
    return std::string(label.View());
}

}  // namespace Quill::Interchange::Testing
