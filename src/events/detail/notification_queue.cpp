#include "events/detail/notification_queue.h"

namespace NQuillUtils::NEvents {

NotificationQueue& NotificationQueue::Instance() {
    static NotificationQueue* const queue = new NotificationQueue;
    return *queue;
}

void NotificationQueue::Push(std::unique_ptr<INotification> item) {
    Items node{item.get()};
    const OrinUtils::ScopedLock lock(&m_mutex);
    m_items.splice(m_items.end(), node);
    item.release();
}

void NotificationQueue::TakeAll(Items& items) {
    const OrinUtils::ScopedLock lock(&m_mutex);
    items.splice(items.end(), m_items);
}

}  // namespace NQuillUtils::NEvents
