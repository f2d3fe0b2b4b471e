// Tables of records that snapshots share.
#pragma once

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

    // A slot that was never given before.
    Slot Reserve() noexcept { return m_next++; }
    // Gives the slots up to and including `slot` away.
    void ReserveThrough(Slot slot) noexcept {
        if (slot >= m_next) m_next = slot + 1;
    }
    Slot NextSlot() const noexcept { return m_next; }

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
    Slot m_next = 1;
};

}  // namespace Orin::DesignDb
