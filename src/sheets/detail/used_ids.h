// The sheet ids of one block that are taken.
#pragma once

#include <cstdint>
#include <map>

namespace Quill::detail {

// A set of ids that only grows. It keeps runs of consecutive ids, so that the first free one is found in logarithmic
// time however many are taken.
class UsedIds {
public:
    void Insert(int id);

    bool IsEmpty() const noexcept { return m_runs.empty(); }
    // Of a set that is not empty.
    int Largest() const noexcept { return static_cast<int>(m_runs.rbegin()->second); }

    // The first id from `from` upwards that is not in the set. Behind the largest integer the search goes on at 1.
    int FirstFreeFrom(int from) const;

private:
    // 64 bits, because the ids around a run's ends are looked at too.
    std::map<std::int64_t, std::int64_t> m_runs;  // first id of a run to its last; no two runs touch
};

}  // namespace Quill::detail
