#include "events/detail/notification_queue.h"

namespace NQuillUtils::NEvents {

NotificationQueue& NotificationQueue::Instance() {
    static NotificationQueue* const queue = new NotificationQueue;
    return *queue;
}

void NotificationQueue::Push(Item& item) {
    const OrinUtils::ScopedLock lock(&m_mutex);
    m_items.splice(m_items.end(), item.m_node);
}

void NotificationQueue::TakeAll(Items& items) {
    const OrinUtils::ScopedLock lock(&m_mutex);
    items.splice(items.end(), m_items);
}

}  // namespace NQuillUtils::NEvents
