// Keeps a wrapper alive while one of its own callbacks runs.
#pragma once

namespace NQuillUtils::NEvents {

// Which deliveries of one wrapper are under way on the owner thread. An observer may have itself taken out while it is
// being called; its wrapper, whose callback is then still on the stack, goes when that callback has returned. Other
// threads are not noted: taking an observer out of the database waits until they have left the wrapper.
//
// One thread at a time, as the dispatcher makes no wrapper that always calls directly.
class WrapperUse {
public:
    // True when the wrapper is not in use: the caller deletes it. Otherwise the outermost delivery does.
    bool Release() noexcept {
        m_released = true;
        return !m_inUse;
    }
    bool Released() const noexcept { return m_released; }

private:
    template <class Wrapper>
    friend class Delivery;

    bool m_inUse = false;
    bool m_released = false;
};

// Marks a delivery of `wrapper`, and deletes it at the end when it was released meanwhile.
template <class Wrapper>
class Delivery {
public:
    explicit Delivery(Wrapper& wrapper) noexcept : m_wrapper(wrapper), m_isInner(wrapper.Use().m_inUse) {
        m_wrapper.Use().m_inUse = true;
    }
    ~Delivery() {
        if (m_isInner) return;
        m_wrapper.Use().m_inUse = false;
        if (m_wrapper.Use().m_released) delete &m_wrapper;
    }
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;

private:
    Wrapper& m_wrapper;
    const bool m_isInner;  // the wrapper is called again from inside a callback of its own
};

}  // namespace NQuillUtils::NEvents
