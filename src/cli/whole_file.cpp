#include "cli/whole_file.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "cli/command.h"
#include "cli/interruption.h"

namespace Quill::Cli {

namespace {

// A new file beside `target`, which is removed unless it takes the target's place.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& target)
        : m_target(target),
          m_path(fmt::format("{}.{}.tmp", target, getpid())),
          m_cleaning(AtInterruption::RemoveFile, m_path) {
        m_file = open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (m_file < 0) ThrowFileError(m_target, errno);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (m_file >= 0) close(m_file);
        if (!m_path.empty()) unlink(m_path.c_str());
    }

    void Write(std::string_view content) {
        while (!content.empty()) {
            const ssize_t written = write(m_file, content.data(), content.size());
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) ThrowFileError(m_target, errno);
            content.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    // The content is on the disk before the name leads to it.
    void TakePlace() {
        if (fsync(m_file) != 0 || close(std::exchange(m_file, -1)) != 0) ThrowFileError(m_target, errno);
        if (std::rename(m_path.c_str(), m_target.c_str()) != 0) ThrowFileError(m_target, errno);
        m_path.clear();
    }

private:
    const std::string m_target;
    std::string m_path;
    const AtInterruption m_cleaning;
    int m_file = -1;
};

}  // namespace

void ThrowFileError(const std::string& path, int code) {
    throw CommandError(path + ": " + std::generic_category().message(code != 0 ? code : EIO));
}

std::string ReadWholeFile(const std::string& path) {
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) ThrowFileError(path, errno);
    std::string text;
    std::string buffer(1 << 16, '\0');
    while (file.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || file.gcount() > 0)
        text.append(buffer, 0, static_cast<std::size_t>(file.gcount()));
    if (file.bad()) ThrowFileError(path, errno);
    return text;
}

void ReplaceFile(const std::string& path, std::string_view content) {
    std::error_code fault;
    std::string target = path;
    if (std::filesystem::exists(path, fault)) {
        if (!std::filesystem::is_regular_file(path, fault)) throw CommandError(path + ": Is not a regular file");
        target = std::filesystem::canonical(path, fault).string();
        if (fault) ThrowFileError(path, fault.value());
    }
    TemporaryFile file(target);
    file.Write(content);
    file.TakePlace();
}

}  // namespace Quill::Cli
