// Real folders and environment variables for tests; both are put back at the end of the scope.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace Quill::Test {

// An empty folder whose name has blanks and letters beyond ASCII.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& base = std::filesystem::temp_directory_path()) {
        int count = 0;
        do {
            m_path = base / ("quill k\xC3\xB6nfig  \xC3\xA9 " + std::to_string(++count));
        } while (!std::filesystem::create_directory(m_path));
    }
    ~TemporaryFolder() { std::filesystem::remove_all(m_path); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string Path() const { return m_path.string(); }
    std::string operator/(const std::string& name) const { return (m_path / name).string(); }

    // Makes the file with the folders that it needs.
    void Write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name, std::ios::binary) << text;
    }
    void MakeFolder(const std::string& name) const { std::filesystem::create_directories(m_path / name); }

private:
    std::filesystem::path m_path;
};

// TOVE_HOME for the time of a test.
class InstallationRoot {
public:
    explicit InstallationRoot(const std::string& value) { Set(value); }
    ~InstallationRoot() { Set(""); }

    // "" takes the variable away.
    void Set(const std::string& value) const {
#ifdef _WIN32
        _putenv_s("TOVE_HOME", value.c_str());
#else
        value.empty() ? unsetenv("TOVE_HOME") : setenv("TOVE_HOME", value.c_str(), 1);
#endif
    }
};

}  // namespace Quill::Test
