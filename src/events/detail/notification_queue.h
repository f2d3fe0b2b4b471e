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

    // An item made ready to be pushed: all memory that its place in the queue takes.
    class Item {
    public:
        explicit Item(std::unique_ptr<INotification> item) : m_node{item.get()} { static_cast<void>(item.release()); }
        ~Item() {
            if (!m_node.empty()) delete m_node.front();
        }
        Item(const Item&) = delete;
        Item& operator=(const Item&) = delete;

    private:
        friend class NotificationQueue;
        Items m_node;  // empty once it is pushed
    };

    void Push(Item& item);
    // Appends all items to `items`, which owns them from then on.
    void TakeAll(Items& items);

private:
    OrinUtils::Mutex m_mutex;
    Items m_items QUILL_GUARDED_BY(m_mutex);
};

}  // namespace NQuillUtils::NEvents
