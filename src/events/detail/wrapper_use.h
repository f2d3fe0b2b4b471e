// Keeps a wrapper alive while one of its own callbacks runs.
#pragma once

#include <atomic>

namespace NQuillUtils::NEvents {

// How many deliveries of one wrapper are under way on the owner thread. An observer may have itself taken out while it
// is being called; its wrapper, whose callback is then still on the stack, goes when that callback has returned. Other
// threads need no counting: taking an observer out of the database waits until they have left the wrapper.
class WrapperUse {
public:
    void Enter() noexcept { m_depth.store(Depth() + 1, std::memory_order_relaxed); }
    // True when the wrapper was released and this was its last use: the caller deletes it.
    bool Leave() noexcept {
        m_depth.store(Depth() - 1, std::memory_order_relaxed);
        return m_released && Depth() == 0;
    }
    // True when it is not in use: the caller deletes it. Otherwise the last use does.
    bool Release() noexcept {
        m_released = true;
        return Depth() == 0;
    }
    bool Released() const noexcept { return m_released; }

private:
    int Depth() const noexcept { return m_depth.load(std::memory_order_relaxed); }

    // One thread counts, as the dispatcher makes no wrapper that always calls directly; so plain loads and stores do,
    // and a callback pays for no atomic exchange.
    std::atomic<int> m_depth{0};
    bool m_released = false;
};

// Marks a delivery of `wrapper`, and deletes it at the end when it was released meanwhile.
template <class Wrapper>
class Delivery {
public:
    explicit Delivery(Wrapper& wrapper) noexcept : m_wrapper(wrapper) { m_wrapper.Use().Enter(); }
    ~Delivery() {
        if (m_wrapper.Use().Leave()) delete &m_wrapper;
    }
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;

private:
    Wrapper& m_wrapper;
};

}  // namespace NQuillUtils::NEvents
