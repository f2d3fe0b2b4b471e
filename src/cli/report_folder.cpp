#include "cli/report_folder.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include "cli/command.h"
#include "cli/design_lookup.h"
#include "cli/whole_file.h"

namespace Quill::Cli {

namespace fs = std::filesystem;

namespace {

constexpr char Marker[] = ".quill-report";
constexpr std::string_view MarkerHead = "Report of quill. The files:";

// Exchanges two folders in one step, so that there is no moment without one. False where the system or the file system
// cannot.
bool Exchange(const fs::path& a, const fs::path& b) {
#ifdef RENAME_EXCHANGE
    return renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0;
#else
    static_cast<void>(a);
    static_cast<void>(b);
    return false;
#endif
}

bool Rename(const fs::path& from, const fs::path& to) {
    return std::rename(from.c_str(), to.c_str()) == 0;
}

// The names that the marker of an earlier report lists; empty when there is none.
std::set<std::string> FilesOfReport(const fs::path& folder) {
    std::error_code fault;
    if (!fs::is_regular_file(folder / Marker, fault)) return {};
    const std::string text = ReadWholeFile((folder / Marker).string());
    const std::vector<std::string> lines = Lines(text);
    if (lines.empty() || lines.front() != MarkerHead) return {};
    std::set<std::string> files(lines.begin() + 1, lines.end());
    files.insert(Marker);
    return files;
}

// Of a folder that is no longer in use. A file that came to it meanwhile stays, and the folder with it.
void RemoveReport(const fs::path& folder, const std::set<std::string>& files) {
    std::error_code fault;
    for (fs::directory_iterator entry(folder, fault), end; !fault && entry != end; entry.increment(fault))
        if (files.count(entry->path().filename().string()) != 0) unlink(entry->path().c_str());
    rmdir(folder.c_str());
}

// The whole path of the folder, without a slash at its end.
fs::path WholePath(const std::string& folder) {
    std::error_code fault;
    const fs::path path = fs::weakly_canonical(fs::absolute(folder, fault), fault);
    if (fault) ThrowFileError(folder, fault.value());
    return path.has_filename() ? path : path.parent_path();
}

}  // namespace

ReportFolder::ReportFolder(const std::string& target) : m_name(target), m_target(WholePath(target)) {
    CheckPlace();
    m_new = m_target.string() + fmt::format(".{}.tmp", getpid());
    if (mkdir(m_new.c_str(), 0777) != 0) {
        const int code = errno;
        m_new.clear();
        ThrowFileError(m_name, code);
    }
}

ReportFolder::~ReportFolder() {
    if (!m_new.empty()) RemoveReport(m_new, m_files);
}

void ReportFolder::CheckPlace() const {
    std::error_code fault;
    const fs::file_status status = fs::status(m_target, fault);
    if (status.type() == fs::file_type::not_found) return;
    if (fault) ThrowFileError(m_name, fault.value());
    if (status.type() != fs::file_type::directory) ThrowFileError(m_name, ENOTDIR);
    const std::set<std::string> known = FilesOfReport(m_target);
    fs::directory_iterator entries(m_target, fault);
    if (fault) ThrowFileError(m_name, fault.value());
    for (const fs::directory_entry& entry : entries) {
        const std::string file = entry.path().filename().string();
        if (known.empty()) throw CommandError(m_name + ": Is neither empty nor an earlier report");
        if (known.count(file) == 0) throw CommandError(m_name + ": Holds " + file + ", which is not of the report");
    }
}

void ReportFolder::Add(const std::string& name, std::string_view content) {
    m_files.insert(name);
    const fs::path path = m_new / name;
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    int code = file < 0 ? errno : 0;
    while (code == 0 && !content.empty()) {
        const ssize_t written = write(file, content.data(), content.size());
        if (written >= 0) {
            content.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            code = errno;
        }
    }
    if (file >= 0 && close(file) != 0 && code == 0) code = errno;
    if (code != 0) ThrowFileError(m_name, code);
}

void ReportFolder::TakePlace() {
    std::string list(MarkerHead);
    list += '\n';
    for (const std::string& file : m_files)
        list += file + '\n';
    Add(Marker, list);

    // A folder that is not there, or empty, gives way by itself.
    if (Rename(m_new, m_target)) {
        m_new.clear();
        return;
    }
    if (errno != ENOTEMPTY && errno != EEXIST) ThrowFileError(m_name, errno);
    CheckPlace();
    const std::set<std::string> files = FilesOfReport(m_target);
    fs::path old = m_new;
    if (!Exchange(m_new, m_target)) {
        old = m_target.string() + fmt::format(".{}.old", getpid());
        if (!Rename(m_target, old)) ThrowFileError(m_name, errno);
        if (!Rename(m_new, m_target)) {
            const int code = errno;
            static_cast<void>(Rename(old, m_target));
            ThrowFileError(m_name, code);
        }
    }
    m_new.clear();
    RemoveReport(old, files);
}

}  // namespace Quill::Cli
