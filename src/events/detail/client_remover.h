// The last item of an observer that was taken out.
#pragma once

#include "events/detail/invalid_observers.h"

namespace NQuillUtils::NEvents {

// Everything queued for the observer stands before this item and is passed over, because the observer is on the list of
// invalid ones. Calling it takes the observer off the list, so that one registered later at the same address is served.
// T is Orin::EventObserver or Orin::ClientObserver.
template <class T>
class ClientRemover : public INotification {
public:
    // Borrows both; the list must outlive the item.
    ClientRemover(InvalidObservers<T>* invalid, T* observer) : m_invalid(invalid), m_observer(observer) {}

    void Call() override { m_invalid->Erase(m_observer); }
    bool IsValid(const IInvalidClientProvider*) const override { return true; }

private:
    InvalidObservers<T>* m_invalid;
    T* m_observer;
};

}  // namespace NQuillUtils::NEvents
