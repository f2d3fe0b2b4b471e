#include "config/detail/files.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "platform/filesystem.h"

namespace Quill::ConfigDetail {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

std::optional<std::string> ReadAsGiven(const std::string& path) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
    if (!file) return std::nullopt;
    std::string text;
    char buffer[16384];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, file.get()))
        text.append(buffer, count);
    if (std::ferror(file.get())) return std::nullopt;  // a directory can be opened, but not read
    return text;
}

}  // namespace

std::string WithForwardSlashes(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

std::optional<std::string> ReadWholeFile(const std::string& path) {
    std::optional<std::string> text = ReadAsGiven(path);
    if (!text && path.find('\\') != std::string::npos) text = ReadAsGiven(WithForwardSlashes(path));
    return text;
}

std::string DirectoryAt(const std::string& path) {
    return zolt::filesystem::path(path).is_dir() ? path : WithForwardSlashes(path);
}

}  // namespace Quill::ConfigDetail
