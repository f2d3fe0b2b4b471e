// What is to be removed when a signal ends the process.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Orin::DesignDb {

// The names of files that this process is making, while it lives. Any thread may make one.
class UnfinishedFiles {
public:
    // Files beyond those for which there is room in the process are left to the next one that makes them.
    explicit UnfinishedFiles(std::vector<std::string> paths);
    UnfinishedFiles(const UnfinishedFiles&) = delete;
    UnfinishedFiles& operator=(const UnfinishedFiles&) = delete;
    ~UnfinishedFiles();

    // Removes those of all that live. May be called in a signal handler.
    static void RemoveAll() noexcept;

private:
    const std::vector<std::string> m_paths;
    std::vector<std::size_t> m_slots;
};

}  // namespace Orin::DesignDb
