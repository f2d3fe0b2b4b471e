#include "sheets/detail/used_names.h"

#include "text/number.h"

namespace Quill::detail {

std::string UsedNames::TakeNumberAbove(std::int64_t number) {
    if (number < m_searchedAbove || number >= m_searchedUpTo) {
        m_searchedAbove = number;
        m_searchedUpTo = number + 1;
    }
    for (;;) {
        const auto [name, taken] = m_names.insert(Text::Render(m_searchedUpTo));
        ++m_searchedUpTo;
        if (taken) return *name;
    }
}

std::string UsedNames::TakeDerivedFrom(const std::string& base) {
    if (m_names.insert(base).second) return base;
    std::int64_t& suffix = m_nextSuffixes.try_emplace(base, 1).first->second;
    for (;;) {
        const auto [name, taken] = m_names.insert(base + "_" + Text::Render(suffix));
        ++suffix;
        if (taken) return *name;
    }
}

}  // namespace Quill::detail
