// What waits in the event queue.
#pragma once

#include <list>

#include "orin/observers.h"
#include "quillutils_export.h"

namespace NQuillUtils::NEvents {

// The observers that were taken out while items for them may still be queued. Owned by who implements it; an observer
// may be listed more than once, and one that is listed may no longer exist.
class QUILLUTILS_EXPORT IInvalidClientProvider {
public:
    virtual const std::list<Orin::EventObserver*>& GetInvalidEventObservers() const = 0;
    virtual const std::list<Orin::ClientObserver*>& GetInvalidClientObservers() const = 0;

protected:
    IInvalidClientProvider() = default;
    IInvalidClientProvider(const IInvalidClientProvider&) = default;
    IInvalidClientProvider& operator=(const IInvalidClientProvider&) = default;
    ~IInvalidClientProvider() = default;
};

// A callback that waits to be made. Built on any thread, called and destroyed on the dispatcher's owner thread.
class QUILLUTILS_EXPORT INotification {
public:
    // Makes the callback. Passes on what the observer throws.
    virtual void Call() = 0;
    virtual ~INotification();
    // False when the observer was taken out since the item was queued: the item is then not called.
    virtual bool IsValid(const IInvalidClientProvider* provider) const = 0;

protected:
    INotification() = default;
    INotification(const INotification&) = default;
    INotification& operator=(const INotification&) = default;
};

}  // namespace NQuillUtils::NEvents
