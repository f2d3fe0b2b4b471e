#include "pages/detail/page_tree.h"

#include <algorithm>
#include <cstddef>

namespace Quill::detail {

std::pair<PageTree::OccurrenceNumber, bool> PageTree::EnterOccurrence(const Orin::Index& block,
                                                                      const Orin::Index& path) {
    const auto [entry, added] =
        m_byPlace.try_emplace({block, path}, static_cast<OccurrenceNumber>(m_occurrences.size()));
    if (added) m_occurrences.emplace_back();
    return {entry->second, added};
}

void PageTree::PutBelow(PageNumber parent, OccurrenceNumber occurrence) {
    Occurrence& below = m_occurrences[occurrence];
    const PageNumber last = below.otherParents.empty() ? below.parent : below.otherParents.back();
    if (last == parent) return;
    if (last == NoPage)
        below.parent = parent;
    else
        below.otherParents.push_back(parent);
    std::vector<PageNumber>& pages = m_pages[parent].below;
    pages.insert(pages.end(), below.pages.begin(), below.pages.end());
}

PageTree::PageNumber PageTree::EnterPage(OccurrenceNumber occurrence, const PageKey& page) {
    const auto [entry, added] = m_byKey.try_emplace(page, static_cast<PageNumber>(m_pages.size()));
    if (!added) return entry->second;
    m_pages.push_back({.key = page});
    Occurrence& own = m_occurrences[occurrence];
    own.pages.push_back(entry->second);
    if (own.parent != NoPage) m_pages[own.parent].below.push_back(entry->second);
    for (const PageNumber parent : own.otherParents)
        m_pages[parent].below.push_back(entry->second);
    return entry->second;
}

std::vector<PageTree::PageNumber> PageTree::PagesFrom(const PageKey& page) const {
    std::vector<PageNumber> found;
    const auto start = m_byKey.find(page);
    if (start == m_byKey.end()) return found;
    if (!m_pages[start->second].isHere || !IsRecorded(start->second)) return found;

    // `found` is the list of those to look at, too: behind `next` stand the pages whose pages below are not in it yet.
    // The marks keep the search from a page that stands below two others, or in a circle.
    ++m_searches;
    m_pages[start->second].search = m_searches;
    found.push_back(start->second);
    for (std::size_t next = 0; next < found.size(); ++next) {
        for (const PageNumber below : m_pages[found[next]].below) {
            Page& candidate = m_pages[below];
            if (!candidate.isHere || candidate.search == m_searches) continue;
            candidate.search = m_searches;
            found.push_back(below);
        }
    }
    return found;
}

std::vector<PageKey> PageTree::PagesOf(const Orin::Index& block, const Orin::Index& path) const {
    std::vector<PageKey> keys;
    const auto found = m_byPlace.find({block, path});
    if (found == m_byPlace.end()) return keys;
    for (const PageNumber page : m_occurrences[found->second].pages)
        if (m_pages[page].isHere) keys.push_back(m_pages[page].key);
    return keys;
}

void PageTree::TakeOut(const PageKey& page) {
    const auto found = m_byKey.find(page);
    if (found != m_byKey.end() && found->second != Root) m_pages[found->second].isHere = false;
}

void PageTree::PutIn(OccurrenceNumber occurrence, const PageKey& page,
                     const std::function<bool(const Orin::Index&)>& standsBehind) {
    const auto known = m_byKey.find(page);
    if (known != m_byKey.end() && m_pages[known->second].isHere) return;
    const PageNumber number = known != m_byKey.end() ? known->second : EnterPage(occurrence, page);
    m_pages[number].isHere = true;
    MarkAsLeaf(number);

    std::vector<PageNumber>& sisters = m_occurrences[occurrence].pages;
    std::erase(sisters, number);
    sisters.insert(std::find_if(sisters.begin(), sisters.end(),
                                [&](PageNumber sister) { return standsBehind(m_pages[sister].key.group); }),
                   number);
}

void PageTree::Clear() {
    m_pages.clear();
    m_byKey.clear();
    m_occurrences.clear();
    m_byPlace.clear();
    m_pages.push_back({.key = PageKey()});
    m_byKey.emplace(PageKey(), Root);
}

}  // namespace Quill::detail
