// Else a 32-bit build could neither see files over 2 GB nor read directories with 64-bit serial numbers.
#define _FILE_OFFSET_BITS 64

#include <cerrno>
#include <memory>

#include <dirent.h>
#include <sys/stat.h>

#include "platform/detail/directory.h"

namespace zolt::filesystem {

FileKind KindOf(const std::string& path) noexcept {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) return FileKind::None;
    if (S_ISDIR(status.st_mode)) return FileKind::Directory;
    return S_ISREG(status.st_mode) ? FileKind::File : FileKind::Other;
}

std::vector<std::string> NamesIn(const std::string& directory) {
    struct Close {
        void operator()(DIR* stream) const noexcept { closedir(stream); }
    };
    std::vector<std::string> names;
    const std::unique_ptr<DIR, Close> stream(opendir(directory.c_str()));
    if (stream == nullptr) return names;

    for (;;) {
        errno = 0;
        const dirent* const entry = readdir(stream.get());
        if (entry == nullptr) break;
        names.emplace_back(entry->d_name);
    }
    if (errno != 0) names.clear();
    return names;
}

}  // namespace zolt::filesystem
