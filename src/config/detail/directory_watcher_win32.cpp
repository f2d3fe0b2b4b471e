#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include "config/detail/directory_watcher.h"

namespace Quill::ConfigDetail {
namespace {

// Input and posted messages of every kind. A thread with a message queue must get back to it, so they end a wait.
constexpr DWORD kWakeMask = 0x4BF;

// Only drives that this machine alone writes and that stay in place tell of every change.
bool IsOnLocalDisk(const std::string& directory) {
    const std::size_t colon = directory.find(':');
    if (colon == std::string::npos) return false;
    const UINT type = GetDriveTypeA((directory.substr(0, colon + 1) + "\\").c_str());
    return type == DRIVE_FIXED || type == DRIVE_RAMDISK;
}

class ChangeNotification final : public DirectoryNotification {
public:
    explicit ChangeNotification(const std::string& directory)
        : m_change(FindFirstChangeNotificationA(directory.c_str(), FALSE, FILE_NOTIFY_CHANGE_LAST_WRITE)),
          m_stop(CreateEventA(nullptr, FALSE, FALSE, nullptr)) {}

    ~ChangeNotification() override {
        if (m_change != INVALID_HANDLE_VALUE) FindCloseChangeNotification(m_change);
        if (m_stop) CloseHandle(m_stop);
    }

    bool IsOpen() const noexcept { return m_change != INVALID_HANDLE_VALUE && m_stop; }

    DirectoryEvent Wait(int milliseconds) override {
        const HANDLE handles[] = {m_change, m_stop};
        switch (MsgWaitForMultipleObjects(2, handles, FALSE, static_cast<DWORD>(milliseconds), kWakeMask)) {
            case WAIT_OBJECT_0:
                return FindNextChangeNotification(m_change) ? DirectoryEvent::Change : DirectoryEvent::Lost;
            case WAIT_OBJECT_0 + 1:
            case WAIT_TIMEOUT:
                return DirectoryEvent::None;
            default:
                return DirectoryEvent::Lost;
        }
    }

    void Stop() noexcept override { SetEvent(m_stop); }

private:
    HANDLE m_change;
    HANDLE m_stop;  // resets itself when it has ended a wait
};

}  // namespace

std::unique_ptr<DirectoryNotification> DirectoryNotification::Open(const std::string& directory) {
    if (!IsOnLocalDisk(directory)) return nullptr;
    auto notification = std::make_unique<ChangeNotification>(directory);
    return notification->IsOpen() ? std::move(notification) : nullptr;
}

std::optional<FileStatus> WatchedFile::StatusOf(int descriptor) {
    struct _stat64 status {};
    if (_fstat64(descriptor, &status) != 0) return std::nullopt;
    return FileStatus{status.st_size, status.st_mtime};
}

void WatchedFile::CloseDescriptor(int descriptor) noexcept {
    _close(descriptor);
}

}  // namespace Quill::ConfigDetail
