// Which pages belong to which block occurrence, and which stand below which: what a walk found out about the hierarchy.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "pages/detail/page_key.h"
#include "pages/detail/slot_index.h"

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
    bool IsRecorded(PageNumber page) const {
        return m_pages[page].isLeaf || ForEachBelow(page, [](PageNumber) { return true; });
    }

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
    static constexpr std::uint32_t None = 0xFFFFFFFF;

    // Lists are chains of numbers, so that entering a page takes no memory of its own.
    struct Page {
        PageKey key;
        OccurrenceNumber occurrence = None;  // the root's has none
        PageNumber nextSister = None;        // the next page of the same occurrence
        std::uint32_t firstBelow = None, lastBelow = None;
        std::uint32_t search = 0;  // the last search that came by
        bool isHere = true;
        bool isLeaf = false;
    };
    struct Occurrence {
        Orin::Index block, path;
        PageNumber firstPage = None, lastPage = None;
        PageNumber lastParent = None;
    };
    struct Below {
        OccurrenceNumber occurrence;
        std::uint32_t next = None;
    };

    PageNumber Find(const PageKey& page) const;
    OccurrenceNumber Find(const Orin::Index& block, const Orin::Index& path) const;
    void Unchain(PageNumber page);

    // Calls take(page) for each page that was entered below, until it gives true; whether it did.
    template <class Take>
    bool ForEachBelow(PageNumber page, const Take& take) const {
        for (std::uint32_t link = m_pages[page].firstBelow; link != None; link = m_below[link].next)
            for (PageNumber below = m_occurrences[m_below[link].occurrence].firstPage; below != None;
                 below = m_pages[below].nextSister)
                if (take(below)) return true;
        return false;
    }

    mutable std::vector<Page> m_pages;
    SlotIndex m_byKey;
    std::vector<Occurrence> m_occurrences;
    SlotIndex m_byPlace;
    std::vector<Below> m_below;  // the occurrences below a page, in its chain
    mutable std::uint32_t m_searches = 0;
};

}  // namespace Quill::detail
