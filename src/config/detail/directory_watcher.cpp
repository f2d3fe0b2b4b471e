#include "config/detail/directory_watcher.h"

#include <utility>

namespace Quill::ConfigDetail {

DirectoryNotification::~DirectoryNotification() = default;

std::shared_ptr<DirectoryWatcher> DirectoryWatcher::Open(const std::string& directory) {
    std::unique_ptr<DirectoryNotification> notification = DirectoryNotification::Open(directory);
    return notification ? std::make_shared<DirectoryWatcher>(std::move(notification)) : nullptr;
}

DirectoryWatcher::DirectoryWatcher(std::unique_ptr<DirectoryNotification> notification)
    : m_notification(std::move(notification)) {}

DirectoryEvent DirectoryWatcher::Wait(int milliseconds) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    // Without this question a thread that polls without a pause could take the lock again before the closing one, wait
    // out a whole cycle and keep it waiting: the stop signal wakes one wait only.
    if (m_closing) return DirectoryEvent::Closed;
    return m_notification->Wait(milliseconds);
}

void DirectoryWatcher::Close() noexcept {
    if (m_closing.exchange(true)) return;
    // The signal comes before the lock, which a waiting thread holds until it is signalled. The notification is there:
    // only this call resets it.
    m_notification->Stop();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_notification.reset();
}

std::optional<FileStatus> WatchedFile::Status() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_descriptor == -1 ? std::nullopt : StatusOf(m_descriptor);
}

void WatchedFile::Close() noexcept {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_descriptor != -1) CloseDescriptor(std::exchange(m_descriptor, -1));
}

}  // namespace Quill::ConfigDetail
