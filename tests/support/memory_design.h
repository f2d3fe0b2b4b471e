// A design in memory, and the one client through which a test writes it and asks it.
#pragma once

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "designdb/database.h"
#include "designdb/editor.h"
#include "designdb/inspector.h"
#include "interchange/design_json.h"

namespace Tests {

inline std::string FileText(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return std::move(text).str();
}

struct MemoryDesign {
    MemoryDesign() {
        EXPECT_TRUE(Orin::DesignDb::Database::Create(database, NextName()));
        Attach();
    }
    // A project of a name of its own.
    static Orin::String NextName() {
        static int s_designs = 0;
        return ("design " + std::to_string(++s_designs)).c_str();
    }
    void Attach() {
        client = database.Connect("client");
        EXPECT_TRUE(client->GetSnapshotByName(snapshot, Orin::DesignDb::WorkingSnapshot));
        EXPECT_TRUE(snapshot->GetUIDManager(objects) && Orin::DesignDb::Editor::Open(editor, snapshot) &&
                    Orin::DesignDb::Inspector::Open(inspector, snapshot));
    }

    // "POINTER: reason", or "" when the text was read.
    std::string Read(const std::string& json) {
        const auto fault = Quill::Interchange::ReadDesignJson(json, snapshot, name);
        return fault ? fault->Message() : "";
    }
    std::string Json() const {
        std::string text;
        EXPECT_TRUE(Quill::Interchange::WriteDesignJson(snapshot, name, text));
        return text;
    }
    bool IsEmpty() const {
        Orin::IteratorT<const Orin::IBlock> blocks;
        Orin::IteratorT<const Orin::IConfig> configs;
        Orin::ListAttribute attributes;
        bool active = true;
        EXPECT_TRUE(snapshot->GetIterBlocks(blocks) && snapshot->GetIterConfigs(configs) &&
                    snapshot->GetAttributes(attributes) && snapshot->IsTransactionActive(active));
        return !blocks && !configs && attributes.IsEmpty() && !active && name == "untouched";
    }

    Orin::DesignDb::Database database;
    std::unique_ptr<Orin::OrinPI> client;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    Orin::IUIDManager objects;
    Orin::DesignDb::Editor editor;
    Orin::DesignDb::Inspector inspector;
    Orin::String name = "untouched";

protected:
    // No design yet.
    struct Detached {};
    explicit MemoryDesign(Detached) {}
};

}  // namespace Tests
