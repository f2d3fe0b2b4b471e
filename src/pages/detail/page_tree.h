// Which pages belong to which block occurrence, and which stand below which: what a walk found out about the hierarchy.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "pages/detail/page_key.h"

namespace Quill::detail {

// Pages and block occurrences are numbered as they are entered. A page that is taken out keeps its places, unseen, and
// can come back to them.
class PageTree {
public:
    using PageNumber = std::uint32_t;
    using OccurrenceNumber = std::uint32_t;

    // Stands above the pages of the root block. It bears the key of the empty page and belongs to no occurrence.
    static constexpr PageNumber Root = 0;

    PageTree() { Clear(); }

    // The occurrence of the block at the place, and whether it is new.
    std::pair<OccurrenceNumber, bool> EnterOccurrence(const Orin::Index& block, const Orin::Index& path);
    // The pages of the occurrence, those that it has and those that it is to have, stand below `parent`, too. Nothing
    // happens when the same was said last.
    void PutBelow(PageNumber parent, OccurrenceNumber occurrence);
    // Enters the page as the last one of the occurrence.
    PageNumber EnterPage(OccurrenceNumber occurrence, const PageKey& page);
    // Nothing stands below the page; it is recorded all the same.
    void MarkAsLeaf(PageNumber page) { m_pages[page].isLeaf = true; }

    const PageKey& KeyOf(PageNumber page) const { return m_pages[page].key; }

    // Whether the page is a leaf or something was entered below it.
    bool IsRecorded(PageNumber page) const { return m_pages[page].isLeaf || !m_pages[page].below.empty(); }

    // The page and all pages below it, each once, the page first. Empty when the page is not here or not recorded;
    // pages below it that are not recorded are among them.
    std::vector<PageNumber> PagesFrom(const PageKey& page) const;

    // The pages of an occurrence in sheet order; empty when it is not here.
    std::vector<PageKey> PagesOf(const Orin::Index& block, const Orin::Index& path) const;

    void TakeOut(const PageKey& page);

    // Enters a page that is new or was taken out: in its occurrence directly before the first page of which
    // `standsBehind(its group)` is true, and below the occurrence's parents. Nothing happens when the page is here.
    void PutIn(OccurrenceNumber occurrence, const PageKey& page,
               const std::function<bool(const Orin::Index&)>& standsBehind);

    void Clear();

private:
    static constexpr PageNumber NoPage = 0xFFFFFFFF;

    struct Page {
        PageKey key;
        std::vector<PageNumber> below = {};
        bool isHere = true;
        bool isLeaf = false;
        std::uint32_t search = 0;  // the last search that came by
    };
    struct Occurrence {
        std::vector<PageNumber> pages = {};
        PageNumber parent = NoPage;
        std::vector<PageNumber> otherParents = {};  // there is one parent as a rule
    };
    struct OccurrenceKey {
        Orin::Index block, path;
        bool operator==(const OccurrenceKey&) const = default;
    };
    struct OccurrenceHash {
        std::size_t operator()(const OccurrenceKey& key) const noexcept { return PageKeyHash()({key.path, key.block}); }
    };

    mutable std::deque<Page> m_pages;
    std::unordered_map<PageKey, PageNumber, PageKeyHash> m_byKey;
    std::vector<Occurrence> m_occurrences;
    std::unordered_map<OccurrenceKey, OccurrenceNumber, OccurrenceHash> m_byPlace;
    mutable std::uint32_t m_searches = 0;
};

}  // namespace Quill::detail
