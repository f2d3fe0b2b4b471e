// Finds numbered records by what they hold.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Quill::detail {

// A hash table of numbers alone: the records stand elsewhere, and the caller tells whether one is the wanted one. A
// walk over a large design enters every page into several tables; this one takes no memory of its own per entry, and
// clearing it keeps the room for the next walk.
class SlotIndex {
public:
    using Slot = std::uint32_t;
    static constexpr Slot None = 0xFFFFFFFF;

    // The slot under that hash of which `isIt(slot)` is true; None when there is none.
    template <class IsIt>
    Slot Find(std::size_t hash, const IsIt& isIt) const {
        if (m_entries.empty()) return None;
        for (std::size_t place = Home(Mixed(hash));; place = Next(place)) {
            const Entry& entry = m_entries[place];
            if (entry.slot == None) return None;
            if (entry.hash == Mixed(hash) && isIt(entry.slot)) return entry.slot;
        }
    }

    // Makes room for one more. Throws std::bad_alloc, with nothing changed.
    void Reserve() {
        if (m_count + 1 > m_entries.size() / 2) Grow();
    }

    // Enters a slot that is not here, under that hash. There is room, by Reserve.
    void Add(std::size_t hash, Slot slot) noexcept {
        Put({Mixed(hash), slot});
        ++m_count;
    }

    // Takes the slot out, which stands under that hash.
    void Erase(std::size_t hash, Slot slot) noexcept {
        std::size_t gap = Home(Mixed(hash));
        while (m_entries[gap].slot != slot)
            gap = Next(gap);
        // Entries behind the gap that a search would no longer reach move into it.
        for (std::size_t place = Next(gap); m_entries[place].slot != None; place = Next(place)) {
            const std::size_t home = Home(m_entries[place].hash);
            if (((place - home) & Mask()) < ((place - gap) & Mask())) continue;
            m_entries[gap] = m_entries[place];
            gap = place;
        }
        m_entries[gap] = {};
        --m_count;
    }

    template <class Take>
    void ForEach(const Take& take) const {
        for (const Entry& entry : m_entries)
            if (entry.slot != None) take(entry.slot);
    }

    void Clear() noexcept {
        std::fill(m_entries.begin(), m_entries.end(), Entry());
        m_count = 0;
    }

private:
    struct Entry {
        std::uint32_t hash = 0;
        Slot slot = None;
    };

    static std::uint32_t Mixed(std::size_t hash) noexcept {
        const std::uint64_t mixed = std::uint64_t{hash} * 0x9E3779B97F4A7C15ULL;
        return static_cast<std::uint32_t>(mixed >> 32);
    }
    std::size_t Mask() const noexcept { return m_entries.size() - 1; }
    std::size_t Home(std::uint32_t hash) const noexcept { return hash & Mask(); }
    std::size_t Next(std::size_t place) const noexcept { return (place + 1) & Mask(); }

    void Put(const Entry& entry) noexcept {
        std::size_t place = Home(entry.hash);
        while (m_entries[place].slot != None)
            place = Next(place);
        m_entries[place] = entry;
    }

    void Grow() {
        std::vector<Entry> smaller(m_entries.empty() ? 16 : m_entries.size() * 2);
        smaller.swap(m_entries);
        for (const Entry& entry : smaller)
            if (entry.slot != None) Put(entry);
    }

    std::vector<Entry> m_entries;  // none, or a power of two, at most half of them in use
    std::size_t m_count = 0;
};

}  // namespace Quill::detail
