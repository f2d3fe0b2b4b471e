// Designs in files, for tests.
#pragma once

#include <filesystem>

#include <stdlib.h>
#include <unistd.h>

#include "designstore/design_file.h"
#include "tests/support/memory_design.h"

namespace Tests {

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

struct Design : MemoryDesign {
    // An empty design in memory.
    Design() = default;
    explicit Design(const std::string& path, Orin::DesignDb::EFileAccess access = Orin::DesignDb::EFileAccess::Write)
        : MemoryDesign(Detached()), opened(Orin::DesignDb::OpenDesignFile(database, NextName(), path, access, name)) {
        if (opened) Attach();
    }

    void Read(const std::string& json) { EXPECT_EQ(MemoryDesign::Read(json), ""); }
    std::string Json() const {
        EXPECT_TRUE(opened) << Refusal();
        return opened ? MemoryDesign::Json() : "";
    }
    Orin::Result Create(const std::string& path) { return Orin::DesignDb::CreateDesignFile(database, path, name); }
    // Why it could not be opened.
    std::string Refusal() const { return opened ? "" : static_cast<const char*>(opened.GetDescription()); }

    Orin::Result opened;
};

}  // namespace Tests
