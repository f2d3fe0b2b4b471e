// Pages by identity and by name, in the order of their entering; what the page holders share.
#pragma once

#include <cstdint>
#include <deque>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "pages/detail/page_key.h"
#include "pages/page_id.h"

namespace Quill::detail {

// Record has a member `page`; it holds the page's only copy. Records stay where they are until Clear.
template <class Record>
class PageTable {
public:
    using Slot = std::uint32_t;

    // The page's slot, and whether it is new.
    std::pair<Slot, bool> Enter(const PageID& page) {
        const Slot slot = static_cast<Slot>(m_records.size());
        const auto [entry, added] = m_slots.try_emplace(KeyOf(page), slot);
        if (!added) return {entry->second, false};
        try {
            m_records.emplace_back().page = page;
        } catch (...) {
            m_slots.erase(entry);
            throw;
        }
        if (m_namesAreWhole) m_names.try_emplace(m_records.back().page.name, slot);
        return {slot, true};
    }

    // The page's record, or null when it is not here.
    const Record* Find(const PageID& page) const {
        const auto found = m_slots.find(KeyOf(page));
        return found != m_slots.end() ? &m_records[found->second] : nullptr;
    }
    Record* Find(const PageID& page) { return const_cast<Record*>(std::as_const(*this).Find(page)); }

    // Of several pages of that name the one entered first; empty when there is none.
    PageID FindByName(std::string_view name) const {
        if (!m_namesAreWhole) {
            for (const auto& [key, slot] : m_slots)
                CollectName(slot);
            m_namesAreWhole = true;
        }
        const auto found = m_names.find(name);
        return found != m_names.end() ? m_records[found->second].page : PageID();
    }

    // The pages that are here, in the order of their entering.
    std::vector<PageID> List() const {
        std::vector<PageID> pages;
        pages.reserve(m_slots.size());
        for (const Record& record : m_records)
            if (Find(record.page) == &record) pages.push_back(record.page);
        return pages;
    }

    // Takes the page out; its record stays behind, reachable by its slot only.
    void Remove(const PageID& page) {
        if (m_slots.erase(KeyOf(page)) == 0) return;
        m_names.clear();
        m_namesAreWhole = false;
    }

    Slot SlotCount() const noexcept { return static_cast<Slot>(m_records.size()); }
    Record& operator[](Slot slot) noexcept { return m_records[slot]; }
    const Record& operator[](Slot slot) const noexcept { return m_records[slot]; }

    void Clear() noexcept {
        m_slots.clear();
        m_names.clear();
        m_namesAreWhole = false;
        m_records.clear();
    }

private:
    void CollectName(Slot slot) const {
        const auto [entry, added] = m_names.try_emplace(m_records[slot].page.name, slot);
        if (!added && slot < entry->second) entry->second = slot;
    }

    std::deque<Record> m_records;
    std::unordered_map<PageKey, Slot, PageKeyHash> m_slots;
    // Views of the names in the records. Made when first asked for, kept up as pages are entered, and made anew after
    // one was taken out, since another page may bear its name.
    mutable std::unordered_map<std::string_view, Slot> m_names;
    mutable bool m_namesAreWhole = false;
};

}  // namespace Quill::detail
