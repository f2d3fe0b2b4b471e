// Pages by identity and by name, in the order of their entering; what the page holders share.
#pragma once

#include <cstddef>
#include <deque>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "pages/detail/page_key.h"
#include "pages/detail/slot_index.h"
#include "pages/page_id.h"

namespace Quill::detail {

// Record has a member `page`; it holds the page's only copy. Records stay where they are until Clear.
template <class Record>
class PageTable {
public:
    using Slot = SlotIndex::Slot;

    // The page's slot, and whether it is new.
    std::pair<Slot, bool> Enter(const PageID& page) {
        m_slots.Reserve();
        const Slot slot = static_cast<Slot>(m_records.size());
        const Slot known = SlotOf(page);
        if (known != SlotIndex::None) return {known, false};
        Record record;
        record.page = page;
        m_records.push_back(std::move(record));
        m_slots.Add(HashOf(page), slot);
        if (m_namesAreWhole) m_names.try_emplace(m_records.back().page.name, slot);
        return {slot, true};
    }

    // The page's record, or null when it is not here.
    const Record* Find(const PageID& page) const {
        const Slot slot = SlotOf(page);
        return slot != SlotIndex::None ? &m_records[slot] : nullptr;
    }
    Record* Find(const PageID& page) { return const_cast<Record*>(std::as_const(*this).Find(page)); }

    // Of several pages of that name the one entered first; empty when there is none.
    PageID FindByName(std::string_view name) const {
        if (!m_namesAreWhole) {
            m_names.clear();
            m_slots.ForEach([this](Slot slot) { CollectName(slot); });
            m_namesAreWhole = true;
        }
        const auto found = m_names.find(name);
        return found != m_names.end() ? m_records[found->second].page : PageID();
    }

    // The pages that are here, in the order of their entering.
    std::vector<PageID> List() const {
        std::vector<PageID> pages;
        pages.reserve(m_records.size());
        for (const Record& record : m_records)
            if (Find(record.page) == &record) pages.push_back(record.page);
        return pages;
    }

    // Takes the page out; its record stays behind, reachable by its slot only.
    void Remove(const PageID& page) {
        // The names are left to the next query: clearing them here would go through the whole table page by page.
        const Slot slot = SlotOf(page);
        if (slot == SlotIndex::None) return;
        m_slots.Erase(HashOf(page), slot);
        m_namesAreWhole = false;
    }

    Slot SlotCount() const noexcept { return static_cast<Slot>(m_records.size()); }
    Record& operator[](Slot slot) noexcept { return m_records[slot]; }
    const Record& operator[](Slot slot) const noexcept { return m_records[slot]; }

    void Clear() noexcept {
        m_slots.Clear();
        m_names.clear();
        m_namesAreWhole = false;
        m_records.clear();
    }

private:
    static std::size_t HashOf(const PageID& page) noexcept { return PageKeyHash()(KeyOf(page)); }
    Slot SlotOf(const PageID& page) const {
        return m_slots.Find(HashOf(page), [&](Slot slot) { return m_records[slot].page == page; });
    }

    void CollectName(Slot slot) const {
        const auto [entry, added] = m_names.try_emplace(m_records[slot].page.name, slot);
        if (!added && slot < entry->second) entry->second = slot;
    }

    std::deque<Record> m_records;
    SlotIndex m_slots;
    // Views of the names in the records. Made when first asked for, kept up as pages are entered, and made anew after
    // one was taken out, since another page may bear its name.
    mutable std::unordered_map<std::string_view, Slot> m_names;
    mutable bool m_namesAreWhole = false;
};

}  // namespace Quill::detail
