// Else a 32-bit build could not ask about directories with 64-bit serial numbers or large file systems, and would watch
// them blind.
#define _FILE_OFFSET_BITS 64

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

#include "config/detail/directory_watcher.h"
#include "config/detail/files.h"
#include "text/number.h"

namespace Quill::ConfigDetail {
namespace {

// The file systems that only this machine writes, by the numbers that statfs gives. Whatever is not listed (network and
// user-space file systems, optical media, future ones) is watched blind, which costs rescans but misses nothing.
constexpr std::uint32_t kLocalFileSystems[] = {
    0x0000EF53,  // ext2, ext3, ext4
    0x58465342,  // XFS
    0x9123683E,  // Btrfs
    0xCA451A4E,  // bcachefs
    0x2FC12FC1,  // ZFS
    0xF2F52010,  // F2FS
    0x3153464A,  // JFS
    0x52654973,  // ReiserFS
    0x00003434,  // NILFS
    0x00004D44,  // FAT
    0x2011BAB0,  // exFAT
    0x5346544E,  // NTFS
    0x7366746E,  // NTFS, the newer driver
    0x0000482B,  // HFS+
    0x0000F15F,  // eCryptfs
    0x794C7630,  // overlay
    0x01021994,  // tmpfs
    0x858458F6,  // ramfs
};

constexpr std::uint32_t kChangeEvents = IN_MODIFY | IN_ATTRIB;
constexpr std::uint32_t kGoneEvents = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

class Descriptor {
public:
    explicit Descriptor(int number) noexcept : m_number(number) {}
    ~Descriptor() {
        if (m_number != -1) ::close(m_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Number() const noexcept { return m_number; }
    bool IsOpen() const noexcept { return m_number != -1; }

private:
    int m_number;
};

// Which directory a path leads to.
struct Identity {
    dev_t device = 0;
    ino_t inode = 0;

    friend bool operator==(const Identity&, const Identity&) = default;
};

bool Identify(const std::string& path, Identity& identity) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return false;
    identity = {status.st_dev, status.st_ino};
    return true;
}

// Whether the kernel says that the medium of a block device can be taken out. Devices without an entry (those of file
// systems in memory or over several disks) are not removable; a partition has the flag at the disk that it is part of.
bool IsRemovable(dev_t device) {
    const std::string entry = "/sys/dev/block/" + Text::Render(std::uint32_t{major(device)}) + ":" +
                              Text::Render(std::uint32_t{minor(device)});
    for (const char* flag : {"/removable", "/../removable"}) {
        const Descriptor file(::open((entry + flag).c_str(), O_RDONLY | O_CLOEXEC));
        char digit = '0';
        if (file.IsOpen() && ::read(file.Number(), &digit, 1) == 1) return digit != '0';
    }
    return false;
}

bool IsOnLocalDisk(const std::string& path, const Identity& identity) {
    struct statfs status {};
    if (::statfs(path.c_str(), &status) != 0) return false;
    const auto type = static_cast<std::uint32_t>(status.f_type);
    return std::find(std::begin(kLocalFileSystems), std::end(kLocalFileSystems), type) != std::end(kLocalFileSystems) &&
           !IsRemovable(identity.device);
}

class Inotify final : public DirectoryNotification {
public:
    Inotify()
        : m_changes(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), m_stop(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

    bool Watch(const std::string& path) {
        // The watch comes first: what it follows is then compared with the path for as long as the watching lasts.
        m_path = path;
        return m_changes.IsOpen() && m_stop.IsOpen() &&
               ::inotify_add_watch(m_changes.Number(), path.c_str(), kChangeEvents | kGoneEvents | IN_ONLYDIR) != -1 &&
               Identify(path, m_identity) && IsOnLocalDisk(path, m_identity);
    }

    DirectoryEvent Wait(int milliseconds) override {
        using std::chrono::steady_clock;
        const auto end = steady_clock::now() + std::chrono::milliseconds(milliseconds);
        pollfd handles[] = {{m_changes.Number(), POLLIN, 0}, {m_stop.Number(), POLLIN, 0}};
        int ready = ::poll(handles, std::size(handles), milliseconds);
        while (ready == -1 && errno == EINTR) {  // a signal to this thread is no reason to lose the directory
            const auto rest = std::chrono::ceil<std::chrono::milliseconds>(end - steady_clock::now()).count();
            ready = ::poll(handles, std::size(handles), static_cast<int>(std::max<std::int64_t>(rest, 0)));
        }
        if (ready == -1) return DirectoryEvent::Lost;
        if (handles[0].revents & POLLIN) return Drain();
        if (handles[0].revents || (handles[1].revents & ~POLLIN)) return DirectoryEvent::Lost;
        if (handles[1].revents) return DirectoryEvent::None;
        return StillThere() ? DirectoryEvent::None : DirectoryEvent::Lost;
    }

    // The signal is never taken back: a stopped notification is closed next.
    void Stop() noexcept override {
        // Fails only when the counter is full, which is a signal as well.
        [[maybe_unused]] const int failed = ::eventfd_write(m_stop.Number(), 1);
    }

private:
    // Takes out what is queued now; what a busy writer adds meanwhile makes the next cycle's change. All events stand
    // for one change, an overflow of the queue too.
    DirectoryEvent Drain() {
        bool gone = false;
        int queued = 0;
        if (::ioctl(m_changes.Number(), FIONREAD, &queued) != 0) return DirectoryEvent::Lost;
        alignas(inotify_event) char buffer[16384];
        while (queued > 0) {
            const ssize_t count = ::read(m_changes.Number(), buffer, sizeof buffer);
            if (count == -1 && errno == EINTR) continue;
            if (count <= 0) return DirectoryEvent::Lost;
            for (const char* next = buffer; next < buffer + count;) {
                inotify_event event;
                std::memcpy(&event, next, sizeof event);
                gone = gone || (event.mask & kGoneEvents);
                next += sizeof event + event.len;
            }
            queued -= static_cast<int>(count);
        }
        return gone ? DirectoryEvent::Lost : DirectoryEvent::Change;
    }

    // The watch follows the directory itself. When a folder above it is renamed, or it is deleted while someone has it
    // open, no event comes, but the path leads elsewhere.
    bool StillThere() const {
        Identity now;
        return Identify(m_path, now) && now == m_identity;
    }

    Descriptor m_changes;
    Descriptor m_stop;
    std::string m_path;
    Identity m_identity;
};

}  // namespace

std::unique_ptr<DirectoryNotification> DirectoryNotification::Open(const std::string& directory) {
    // A share of a network, whatever a local path of that name may be.
    if (directory.rfind("\\\\", 0) == 0) return nullptr;
    auto notification = std::make_unique<Inotify>();
    return notification->Watch(DirectoryAt(directory)) ? std::move(notification) : nullptr;
}

std::optional<FileStatus> WatchedFile::StatusOf(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) return std::nullopt;
    return FileStatus{status.st_size, status.st_mtime};
}

void WatchedFile::CloseDescriptor(int descriptor) noexcept {
    ::close(descriptor);
}

}  // namespace Quill::ConfigDetail
