#include "sheets/detail/used_ids.h"

#include <iterator>
#include <limits>

namespace Quill::detail {

void UsedIds::Insert(int id) {
    std::int64_t first = id;
    std::int64_t last = id;
    auto next = m_runs.upper_bound(id);
    if (next != m_runs.begin()) {
        const auto run = std::prev(next);
        if (run->second >= id) return;
        if (run->second == first - 1) first = run->first;
    }
    if (next != m_runs.end() && next->first == last + 1) {
        last = next->second;
        m_runs.erase(next);
    }
    m_runs[first] = last;
}

int UsedIds::FirstFreeFrom(int from) const {
    for (;;) {
        const auto next = m_runs.upper_bound(from);
        if (next == m_runs.begin()) return from;
        const std::int64_t last = std::prev(next)->second;
        if (last < from) return from;
        if (last < std::numeric_limits<int>::max()) return static_cast<int>(last + 1);
        from = 1;  // there are fewer sheets than positive integers, so this search ends below the largest one
    }
}

}  // namespace Quill::detail
