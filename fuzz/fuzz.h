// What the fuzz targets share.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "designdb/database.h"
#include "orin/orin.h"

namespace Fuzz {

// Ends the run, so that the input is kept, when something does not hold.
inline void Require(bool holds) {
    if (!holds) std::abort();
}

inline std::string_view Text(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// The lines of an input, at least `count` of them.
inline std::vector<std::string> Lines(std::string_view text, std::size_t count) {
    std::vector<std::string> lines;
    for (std::size_t end = 0; end != std::string_view::npos; text.remove_prefix(end + 1)) {
        end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) break;
    }
    if (lines.size() < count) lines.resize(count);
    return lines;
}

// A folder for what is read from files; it goes with the process.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "quill-fuzz-XXXXXX").string();
        Require(mkdtemp(pattern.data()) != nullptr);
        m_path = pattern;
    }
    ~ScratchFolder() { std::filesystem::remove_all(m_path); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& Path() const { return m_path; }
    std::string operator/(const char* name) const { return m_path + "/" + name; }
    std::string Write(const char* name, std::string_view content) const {
        const std::string path = *this / name;
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

private:
    std::string m_path;
};

// An empty design and its client.
struct Design {
    Design() {
        Require(static_cast<bool>(Orin::DesignDb::Database::Create(database, "fuzz")));
        Attach();
    }
    explicit Design(const Orin::DesignDb::Database& opened) : database(opened) { Attach(); }

    void Attach() {
        client = database.Connect("fuzz");
        Require(static_cast<bool>(client->GetSnapshotByName(snapshot, Orin::DesignDb::WorkingSnapshot)));
    }

    Orin::DesignDb::Database database;
    std::unique_ptr<Orin::OrinPI> client;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
};

}  // namespace Fuzz
