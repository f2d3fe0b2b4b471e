// One directory under the system's change notification, as every port offers it.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace Quill::ConfigDetail {

enum class DirectoryEvent {
    None,    // the time passed, or the wait was stopped
    Change,  // something in the directory changed
    Lost,    // the directory is gone or the notification failed: it may have changed, and no more will be heard of it
    Closed,  // the handles had been closed before
};

// The port: the handles of one notification and of the signal that ends a wait, owned. Defined in
// directory_watcher_<port>.cpp.
class DirectoryNotification {
public:
    // Null when the directory cannot be watched or does not lie on a local disk that stays in place.
    static std::unique_ptr<DirectoryNotification> Open(const std::string& directory);
    virtual ~DirectoryNotification();

    // Waits for a change, at most `milliseconds`. Never gives Closed.
    virtual DirectoryEvent Wait(int milliseconds) = 0;

    // Ends the wait that is under way on another thread, or else the next one.
    virtual void Stop() noexcept = 0;

    DirectoryNotification(const DirectoryNotification&) = delete;
    DirectoryNotification& operator=(const DirectoryNotification&) = delete;

protected:
    DirectoryNotification() = default;
};

// Shares one notification between those who wait on it and those who close it, on any threads.
class DirectoryWatcher {
public:
    // Null as DirectoryNotification::Open.
    static std::shared_ptr<DirectoryWatcher> Open(const std::string& directory);

    explicit DirectoryWatcher(std::unique_ptr<DirectoryNotification> notification);

    // Callers take turns.
    DirectoryEvent Wait(int milliseconds);

    // Ends a wait that is under way and closes the handles; they are closed when it returns. A second call does nothing
    // and does not wait for the first.
    void Close() noexcept;

private:
    std::atomic<bool> m_closing{false};
    std::mutex m_mutex;  // held during a wait, so that nothing is closed that is waited on
    std::unique_ptr<DirectoryNotification> m_notification;
};

// What tells that a file has changed.
struct FileStatus {
    std::int64_t size = 0;
    std::int64_t modified = 0;  // seconds since 1970

    friend bool operator==(const FileStatus&, const FileStatus&) = default;
};

// Owns an open file, for whoever shares it, on any threads.
class WatchedFile {
public:
    explicit WatchedFile(int descriptor) : m_descriptor(descriptor) {}
    ~WatchedFile() { Close(); }
    WatchedFile(const WatchedFile&) = delete;
    WatchedFile& operator=(const WatchedFile&) = delete;

    // Nothing when the file has been closed or the system refuses.
    std::optional<FileStatus> Status();

    void Close() noexcept;

private:
    static std::optional<FileStatus> StatusOf(int descriptor);  // of the port
    static void CloseDescriptor(int descriptor) noexcept;       // of the port

    std::mutex m_mutex;
    int m_descriptor;  // -1 when closed
};

}  // namespace Quill::ConfigDetail
