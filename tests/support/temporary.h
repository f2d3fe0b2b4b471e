// Real folders and environment variables for tests; both are put back at the end of the scope.
#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace Tests {

// A path in the library's form, as the standard library takes it. On Windows the library's is text of the ANSI code
// page, which for the letters used here has the numbers of Unicode.
inline std::filesystem::path Native(const std::string& path) {
#ifdef _WIN32
    std::wstring wide;
    for (const char c : path)
        wide += static_cast<unsigned char>(c);
    return wide;
#else
    return path;
#endif
}

// Makes a file older by an hour.
inline void SetBack(const std::string& file) {
    const auto time = std::filesystem::last_write_time(Native(file));
    std::filesystem::last_write_time(Native(file), time - std::chrono::hours(1));
}

// An empty folder whose name has blanks and letters beyond ASCII.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& base = std::filesystem::temp_directory_path()) {
        int count = 0;
        do {
            m_path = base.string() + "/quill k\xC3\xB6nfig  \xC3\xA9 " + std::to_string(++count);
        } while (!std::filesystem::create_directory(Native(m_path)));
    }
    ~TemporaryFolder() { std::filesystem::remove_all(Native(m_path)); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& Path() const { return m_path; }
    std::string operator/(const std::string& name) const { return m_path + "/" + name; }

    // Makes the file with the folders that it needs.
    void Write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories(Native(*this / name).parent_path());
        std::ofstream(*this / name, std::ios::binary) << text;
    }
    void MakeFolder(const std::string& name) const { std::filesystem::create_directories(Native(*this / name)); }

private:
    std::string m_path;
};

// An environment variable for the time of a test; "" takes it away.
class Variable {
public:
    explicit Variable(const char* name, const std::string& value = "") : m_name(name) { Set(value); }
    ~Variable() { Set(""); }

    void Set(const std::string& value) const {
#ifdef _WIN32
        _putenv_s(m_name, value.c_str());
#else
        value.empty() ? unsetenv(m_name) : setenv(m_name, value.c_str(), 1);
#endif
    }

private:
    const char* const m_name;
};

}  // namespace Tests
