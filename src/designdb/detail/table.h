// Tables of records that snapshots share.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "orin/object.h"

namespace Orin::DesignDb {

// The number of a record in its table, from 1; 0 is no record. A number is never given to a second record.
using Slot = std::uint32_t;

// Gives slots away, to any threads at once.
class SlotCounter {
public:
    SlotCounter() noexcept = default;
    SlotCounter(const SlotCounter& other) noexcept : m_next(other.Next()) {}
    SlotCounter& operator=(const SlotCounter& other) noexcept {
        m_next.store(other.Next(), std::memory_order_relaxed);
        return *this;
    }

    Slot Next() const noexcept { return m_next.load(std::memory_order_relaxed); }
    Slot Take() noexcept { return m_next.fetch_add(1, std::memory_order_relaxed); }
    // False when the slot was given away already.
    bool TakeThrough(Slot slot) noexcept {
        Slot next = Next();
        while (slot >= next)
            if (m_next.compare_exchange_weak(next, slot + 1, std::memory_order_relaxed)) return true;
        return false;
    }

private:
    std::atomic<Slot> m_next{1};
};

// Records of one kind by slot, in chunks. Copying a table copies a pointer for each chunk; the first write to a chunk
// that another table shares copies that chunk alone. A record whose index is empty is not there.
template <class Record>
class Table {
public:
    // The record, or null when there is none.
    const Record* Find(Slot slot) const noexcept {
        const std::size_t chunk = slot / ChunkSize;
        if (chunk >= m_chunks.size() || !m_chunks[chunk]) return nullptr;
        const Record& record = m_chunks[chunk]->records[slot % ChunkSize];
        return record.index.IsEmpty() ? nullptr : &record;
    }

    // The record for writing; it is there.
    Record& Write(Slot slot) { return Own(slot / ChunkSize).records[slot % ChunkSize]; }

    // Makes room for a record at a slot that Reserve gave.
    void Prepare(Slot slot) {
        const std::size_t at = slot / ChunkSize;
        if (at >= m_chunks.size()) m_chunks.resize(at + 1);
        if (m_chunks[at]) {
            Own(at);
        } else {
            m_chunks[at] = RefPtr<Chunk>(new Chunk);
        }
    }

    // Puts a record where room was made; allocates nothing.
    void Put(Slot slot, Record record) noexcept {
        Chunk& chunk = *m_chunks[slot / ChunkSize];
        chunk.records[slot % ChunkSize] = std::move(record);
        ++chunk.count;
        ++m_count;
    }

    // Takes a record out.
    Record Take(Slot slot) {
        Chunk& chunk = Own(slot / ChunkSize);
        --chunk.count;
        --m_count;
        return std::exchange(chunk.records[slot % ChunkSize], Record());
    }

    // A slot that was never given before. Any threads may reserve at once; who writes to the table keeps them out.
    Slot Reserve() const noexcept { return m_next.Take(); }
    // Gives the slots up to and including `slot` away; false when that was given already.
    bool ReserveThrough(Slot slot) const noexcept { return m_next.TakeThrough(slot); }
    Slot NextSlot() const noexcept { return m_next.Next(); }

    // The first slot above `slot` that holds a record, or 0.
    Slot Above(Slot slot) const noexcept {
        for (std::size_t at = std::size_t{slot} + 1; at / ChunkSize < m_chunks.size();) {
            const RefPtr<Chunk>& chunk = m_chunks[at / ChunkSize];
            if (!chunk || chunk->count == 0) {
                at = (at / ChunkSize + 1) * ChunkSize;
                continue;
            }
            if (!chunk->records[at % ChunkSize].index.IsEmpty()) return static_cast<Slot>(at);
            ++at;
        }
        return 0;
    }

    std::size_t Count() const noexcept { return m_count; }

    // Calls visit(slot, own, others) for each slot of the chunks that the two tables do not share, upwards; a record is
    // null where it is not there, and one of the two is.
    template <class Visit>
    void Compare(const Table& other, Visit&& visit) const {
        const std::size_t chunks = std::max(m_chunks.size(), other.m_chunks.size());
        for (std::size_t at = 0; at < chunks; ++at) {
            const Chunk* const own = at < m_chunks.size() ? m_chunks[at].Get() : nullptr;
            const Chunk* const theirs = at < other.m_chunks.size() ? other.m_chunks[at].Get() : nullptr;
            if (own == theirs) continue;
            for (std::size_t i = 0; i < ChunkSize; ++i) {
                const Record* const mine =
                    own != nullptr && !own->records[i].index.IsEmpty() ? &own->records[i] : nullptr;
                const Record* const its =
                    theirs != nullptr && !theirs->records[i].index.IsEmpty() ? &theirs->records[i] : nullptr;
                if (mine != nullptr || its != nullptr) visit(static_cast<Slot>(at * ChunkSize + i), mine, its);
            }
        }
    }

private:
    static constexpr std::size_t ChunkSize = 128;

    struct Chunk {
        std::array<Record, ChunkSize> records;
        std::size_t count = 0;
        mutable std::atomic<std::uint32_t> references{0};

        Chunk() = default;
        Chunk(const Chunk& other) : records(other.records), count(other.count) {}
        void AddReference() const noexcept { references.fetch_add(1, std::memory_order_relaxed); }
        void DropReference() const noexcept {
            if (references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
        }
    };

    Chunk& Own(std::size_t at) {
        if (m_chunks[at]->references.load(std::memory_order_acquire) != 1)
            m_chunks[at] = RefPtr<Chunk>(new Chunk(*m_chunks[at]));
        return *m_chunks[at];
    }

    std::vector<RefPtr<Chunk>> m_chunks;
    std::size_t m_count = 0;
    mutable SlotCounter m_next;
};

}  // namespace Orin::DesignDb
