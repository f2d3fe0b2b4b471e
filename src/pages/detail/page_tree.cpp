#include "pages/detail/page_tree.h"

#include <cstddef>

namespace Quill::detail {

PageTree::PageNumber PageTree::Find(const PageKey& page) const {
    return m_byKey.Find(PageKeyHash()(page), [&](PageNumber number) { return m_pages[number].key == page; });
}

PageTree::OccurrenceNumber PageTree::Find(const Orin::Index& block, const Orin::Index& path) const {
    return m_byPlace.Find(PageKeyHash()({path, block}), [&](OccurrenceNumber number) {
        return m_occurrences[number].path == path && m_occurrences[number].block == block;
    });
}

std::pair<PageTree::OccurrenceNumber, bool> PageTree::EnterOccurrence(const Orin::Index& block,
                                                                      const Orin::Index& path) {
    m_byPlace.Reserve();
    const OccurrenceNumber known = Find(block, path);
    if (known != None) return {known, false};
    const auto number = static_cast<OccurrenceNumber>(m_occurrences.size());
    m_occurrences.push_back({.block = block, .path = path});
    m_byPlace.Add(PageKeyHash()({path, block}), number);
    return {number, true};
}

void PageTree::PutBelow(PageNumber parent, OccurrenceNumber occurrence) {
    if (m_occurrences[occurrence].lastParent == parent) return;
    const auto link = static_cast<std::uint32_t>(m_below.size());
    m_below.push_back({.occurrence = occurrence});
    m_occurrences[occurrence].lastParent = parent;
    Page& above = m_pages[parent];
    (above.firstBelow == None ? above.firstBelow : m_below[above.lastBelow].next) = link;
    above.lastBelow = link;
}

PageTree::PageNumber PageTree::EnterPage(OccurrenceNumber occurrence, const PageKey& page) {
    m_byKey.Reserve();
    const PageNumber known = Find(page);
    if (known != None) return known;
    const auto number = static_cast<PageNumber>(m_pages.size());
    m_pages.push_back({.key = page, .occurrence = occurrence});
    m_byKey.Add(PageKeyHash()(page), number);
    Occurrence& own = m_occurrences[occurrence];
    (own.firstPage == None ? own.firstPage : m_pages[own.lastPage].nextSister) = number;
    own.lastPage = number;
    return number;
}

std::vector<PageTree::PageNumber> PageTree::PagesFrom(const PageKey& page) const {
    std::vector<PageNumber> found;
    const PageNumber start = Find(page);
    if (start == None || !m_pages[start].isHere || !IsRecorded(start)) return found;

    // `found` is the list of those to look at, too: behind `next` stand the pages whose pages below are not in it yet.
    // The marks keep the search from a page that stands below two others, or in a circle.
    ++m_searches;
    m_pages[start].search = m_searches;
    found.push_back(start);
    for (std::size_t next = 0; next < found.size(); ++next) {
        ForEachBelow(found[next], [&](PageNumber below) {
            Page& candidate = m_pages[below];
            if (candidate.isHere && candidate.search != m_searches) {
                candidate.search = m_searches;
                found.push_back(below);
            }
            return false;
        });
    }
    return found;
}

std::vector<PageKey> PageTree::PagesOf(const Orin::Index& block, const Orin::Index& path) const {
    std::vector<PageKey> keys;
    const OccurrenceNumber found = Find(block, path);
    if (found == None) return keys;
    for (PageNumber page = m_occurrences[found].firstPage; page != None; page = m_pages[page].nextSister)
        if (m_pages[page].isHere) keys.push_back(m_pages[page].key);
    return keys;
}

void PageTree::TakeOut(const PageKey& page) {
    const PageNumber found = Find(page);
    if (found != None && found != Root) m_pages[found].isHere = false;
}

void PageTree::Unchain(PageNumber page) {
    Occurrence& occurrence = m_occurrences[m_pages[page].occurrence];
    PageNumber before = None;
    for (PageNumber sister = occurrence.firstPage; sister != page; sister = m_pages[sister].nextSister)
        before = sister;
    (before == None ? occurrence.firstPage : m_pages[before].nextSister) = m_pages[page].nextSister;
    if (occurrence.lastPage == page) occurrence.lastPage = before;
}

void PageTree::PutIn(OccurrenceNumber occurrence, const PageKey& page,
                     const std::function<bool(const Orin::Index&)>& standsBehind) {
    const PageNumber known = Find(page);
    if (known != None && m_pages[known].isHere) return;
    const PageNumber number = known != None ? known : EnterPage(occurrence, page);
    m_pages[number].isHere = true;
    MarkAsLeaf(number);

    Occurrence& own = m_occurrences[occurrence];
    Unchain(number);
    m_pages[number].occurrence = occurrence;
    PageNumber before = None, behind = own.firstPage;
    while (behind != None && !standsBehind(m_pages[behind].key.group)) {
        before = behind;
        behind = m_pages[behind].nextSister;
    }
    m_pages[number].nextSister = behind;
    (before == None ? own.firstPage : m_pages[before].nextSister) = number;
    if (behind == None) own.lastPage = number;
}

void PageTree::Clear() {
    m_pages.clear();
    m_byKey.Clear();
    m_occurrences.clear();
    m_byPlace.Clear();
    m_below.clear();
    m_pages.push_back({.key = PageKey()});
    m_byKey.Reserve();
    m_byKey.Add(PageKeyHash()(PageKey()), Root);
}

}  // namespace Quill::detail
