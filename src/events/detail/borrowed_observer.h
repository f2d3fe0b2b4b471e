// The observer behind a wrapper, as long as there is one.
#pragma once

#include <atomic>

namespace NQuillUtils::NEvents {

// Borrows an observer until it is told to forget it; from then on an observer that does nothing stands in its place.
// Callbacks on other threads may be reading meanwhile.
template <class T>
class BorrowedObserver {
public:
    explicit BorrowedObserver(T* observer) noexcept : m_observer(observer) {}

    T* Get() const noexcept { return m_observer.load(std::memory_order_relaxed); }
    T* operator->() const noexcept { return Get(); }
    operator T*() const noexcept { return Get(); }

    void Forget() noexcept { m_observer.store(&m_nobody, std::memory_order_relaxed); }

private:
    struct Nobody : T {};

    Nobody m_nobody;
    std::atomic<T*> m_observer;
};

}  // namespace NQuillUtils::NEvents
