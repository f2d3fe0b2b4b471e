// How a wrapper defers a callback.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "attributes/utils_exception.h"
#include "events/detail/notification_queue.h"
#include "events/orin_notification_data.h"

namespace NQuillUtils::NEvents {

// Event kinds and modes are kept as numbers, everything else as it is.
template <class T>
decltype(auto) RecordArgument(const T& argument) {
    if constexpr (std::is_enum_v<T>)
        return static_cast<int>(argument);
    else
        return (argument);
}

// Queues the item that `build` makes. The wrapper's mutex is held for both, so that items stand in the queue in the
// order in which what they say was read.
template <class Build>
void QueueItem(OrinUtils::Mutex* mutex, const Build& build) {
    const OrinUtils::ScopedLock lock(mutex);
    NotificationQueue::Item item(build());
    NotificationQueue::Instance().Push(item);
}

template <class Observer, class... Arguments>
void QueueRecord(OrinUtils::Mutex* mutex, ORINNOTIFICATIONDATA::Type type, Observer* observer,
                 const Arguments&... arguments) {
    QueueItem(mutex,
              [&] { return std::make_unique<ORINNOTIFICATIONDATA>(type, observer, RecordArgument(arguments)...); });
}

}  // namespace NQuillUtils::NEvents
