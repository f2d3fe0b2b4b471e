#include "labels/net_limiter.h"

#include <atomic>

#include "labels/detail/limiter_brackets.h"

namespace Quill::BusContents {

namespace {

constinit std::atomic<int> current{NoLimiter};

}  // namespace

int NetLimiterFromText(std::string_view text) noexcept {
    for (const detail::LimiterBrackets& row : detail::LimiterTable) {
        if (row.text == text) return row.limiter;
    }
    return UnknownLimiter;
}

int CurrentNetLimiter() noexcept {
    return current.load();
}

NetLimiterScope::NetLimiterScope(std::string_view text) noexcept : m_saved(current.load()), m_limiter(m_saved) {
    const int limiter = NetLimiterFromText(text);
    if (limiter == UnknownLimiter) return;
    m_limiter = limiter;
    current.store(limiter);
}

NetLimiterScope::~NetLimiterScope() {
    current.store(m_saved);
}

}  // namespace Quill::BusContents
