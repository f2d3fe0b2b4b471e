// The process's one queue of deferred callbacks.
#pragma once

#include <list>
#include <memory>

#include "attributes/utils_exception.h"
#include "events/notification.h"

namespace NQuillUtils::NEvents {

// Owns its items, in their order of arrival. Any thread may use it. Its mutex is never held while an item is made,
// called or destroyed, nor while memory is allocated.
class NotificationQueue {
public:
    using Items = std::list<INotification*>;

    // Made by the first caller and never destroyed, so that a late callback finds it at the end of the process.
    static NotificationQueue& Instance();

    void Push(std::unique_ptr<INotification> item);
    // Appends all items to `items`, which owns them from then on.
    void TakeAll(Items& items);

private:
    OrinUtils::Mutex m_mutex;
    Items m_items QUILL_GUARDED_BY(m_mutex);
};

}  // namespace NQuillUtils::NEvents
