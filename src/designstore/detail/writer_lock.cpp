#include "designstore/detail/writer_lock.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "designstore/detail/sqlite.h"

namespace Orin::DesignDb {

namespace {

std::string ThisProcess() {
    char host[256] = "";
    if (gethostname(host, sizeof host - 1) != 0) host[0] = '\0';
    return std::string(host) + "\n" + std::to_string(getpid()) + "\n";
}

// What another process wrote, as words.
std::string HolderOf(int file) {
    char text[512];
    const ssize_t size = pread(file, text, sizeof text, 0);
    const std::string_view holder(text, size > 0 ? static_cast<std::size_t>(size) : 0);
    const std::size_t line = holder.find('\n');
    const std::size_t end = line != holder.npos ? holder.find('\n', line + 1) : holder.npos;
    // It may have the lock and not have written yet.
    if (end == holder.npos) return "another process";
    std::string words = "process ";
    words.append(holder.substr(line + 1, end - line - 1)).append(" on host ").append(holder.substr(0, line));
    return words;
}

bool IsStillThere(int file, const std::string& path) {
    struct stat own, named;
    return fstat(file, &own) == 0 && stat(path.c_str(), &named) == 0 && own.st_ino == named.st_ino &&
           own.st_dev == named.st_dev;
}

}  // namespace

WriterLock::WriterLock(const std::string& designFile) : m_path(designFile + Suffix) {
    const auto fail = [] { throw StoreFault{"its lock file: " + std::generic_category().message(errno)}; };
    for (;;) {
        m_file = open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
        if (m_file < 0) fail();
        // A lock of the open file, not of the process: it also keeps out another part of this process.
        struct flock whole = {};
        whole.l_type = F_WRLCK;
        whole.l_whence = SEEK_SET;
        if (fcntl(m_file, F_OFD_SETLK, &whole) != 0) {
            const int code = errno;
            const std::string holder = HolderOf(m_file);
            close(m_file);
            errno = code;
            if (code != EAGAIN && code != EACCES) fail();
            throw StoreFault{"is being written by " + holder};
        }
        // Its holder may have removed the file between the opening and the locking.
        if (IsStillThere(m_file, m_path)) break;
        close(m_file);
    }
    const std::string holder = ThisProcess();
    if (ftruncate(m_file, 0) != 0 || pwrite(m_file, holder.data(), holder.size(), 0) < 0) {
        const int code = errno;
        close(m_file);
        errno = code;
        fail();
    }
}

WriterLock::~WriterLock() {
    unlink(m_path.c_str());
    close(m_file);
}

}  // namespace Orin::DesignDb
