// Designs in files, for tests.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include "designdb/editor.h"
#include "designstore/design_file.h"
#include "interchange/design_json.h"

namespace Tests {

inline std::string FileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A folder that goes with the object; in memory where the system has such, since the tests sync a great deal.
class Folder {
public:
    Folder() {
        std::string pattern = access("/dev/shm", W_OK) == 0 ? "/dev/shm/" : testing::TempDir();
        pattern += "quill-XXXXXX";
        EXPECT_NE(mkdtemp(pattern.data()), nullptr);
        m_path = pattern;
    }
    ~Folder() { std::filesystem::remove_all(m_path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string operator/(const char* name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

// A project of its own name, and one client of it.
struct Design {
    static Orin::String NextName() {
        static int s_designs = 0;
        return ("design " + std::to_string(++s_designs)).c_str();
    }

    // An empty design in memory.
    Design() {
        EXPECT_TRUE(Orin::DesignDb::Database::Create(database, NextName()));
        Attach();
    }
    explicit Design(const std::string& path, Orin::DesignDb::EFileAccess access = Orin::DesignDb::EFileAccess::Write) {
        opened = Orin::DesignDb::OpenDesignFile(database, NextName(), path, access, name);
        if (opened) Attach();
    }

    void Attach() {
        client = database.Connect("client");
        EXPECT_TRUE(client->GetSnapshotByName(snapshot, Orin::DesignDb::WorkingSnapshot));
        EXPECT_TRUE(Orin::DesignDb::Editor::Open(editor, snapshot));
    }
    void Read(const std::string& json) {
        const auto fault = Quill::Interchange::ReadDesignJson(json, snapshot, name);
        EXPECT_FALSE(fault) << fault->Message();
    }
    std::string Json() const {
        std::string text;
        EXPECT_TRUE(opened) << static_cast<const char*>(opened.GetDescription());
        EXPECT_TRUE(opened && Quill::Interchange::WriteDesignJson(snapshot, name, text));
        return text;
    }
    Orin::Result Create(const std::string& path) { return Orin::DesignDb::CreateDesignFile(database, path, name); }
    // Why it could not be opened.
    std::string Refusal() const {
        return opened ? std::string() : std::string(static_cast<const char*>(opened.GetDescription()));
    }

    Orin::Result opened;
    Orin::DesignDb::Database database;
    std::unique_ptr<Orin::OrinPI> client;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    Orin::DesignDb::Editor editor;
    Orin::String name;
};

}  // namespace Tests
