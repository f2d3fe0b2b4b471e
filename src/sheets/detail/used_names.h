// The sheet names of one block that are taken.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace Quill::detail {

// A set of names that only grows, told apart byte by byte. Because no name is ever given back, a search for a free one
// can go on where an earlier search from the same or a lower place ended: what was taken then is taken now. The outcome
// is that of a search from the start.
class UsedNames {
public:
    void Insert(std::string_view name) { m_names.emplace(name); }
    bool Contains(std::string_view name) const { return m_names.find(name) != m_names.end(); }

    // Takes the first of `number` + 1, `number` + 2, ... in decimal that is free.
    std::string TakeNumberAbove(std::int64_t number);

    // Takes the first of `base`, `base`_1, `base`_2, ... that is free.
    std::string TakeDerivedFrom(const std::string& base);

private:
    std::set<std::string, std::less<>> m_names;

    // Every number above m_searchedAbove and below m_searchedUpTo is taken.
    std::int64_t m_searchedAbove = 0;
    std::int64_t m_searchedUpTo = 0;

    // By base: every suffix from 1 to below this one is taken.
    std::map<std::string, std::int64_t> m_nextSuffixes;
};

}  // namespace Quill::detail
