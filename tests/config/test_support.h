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
    TemporaryFolder() {
        static int count = 0;
        do {
            m_path =
                std::filesystem::temp_directory_path() / ("quill k\xC3\xB6nfig  \xC3\xA9 " + std::to_string(++count));
        } while (!std::filesystem::create_directory(m_path));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string operator/(const std::string& name) const { return (m_path / name).string(); }
    std::string Path() const { return m_path.string(); }

    // Makes the file with the folders that it needs.
    void Write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name, std::ios::binary) << text;
    }
    void MakeFolder(const std::string& name) const { std::filesystem::create_directories(m_path / name); }

private:
    std::filesystem::path m_path;
};

class EnvironmentVariable {
public:
    EnvironmentVariable(const char* name, const std::string& value) : m_name(name) {
        if (const char* old = std::getenv(name)) m_old = old;
        Set(value);
    }
    ~EnvironmentVariable() { Set(m_old); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

    // "" takes the variable away.
    void Set(const std::string& value) const {
#ifdef _WIN32
        _putenv_s(m_name, value.c_str());
#else
        value.empty() ? unsetenv(m_name) : setenv(m_name, value.c_str(), 1);
#endif
    }

private:
    const char* m_name;
    std::string m_old;
};

}  // namespace Quill::Test
