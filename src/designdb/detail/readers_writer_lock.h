// A lock for many readers and few writers whose readers share no cache line that they write.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace Orin::DesignDb {

// Every thread counts itself in a slot of its own (threads beyond the number of slots share), so readers on several
// cores do not slow each other; a writer pays for that by looking at all slots. Neither side may be entered again by a
// thread that is inside. Readers wait while a writer is inside or waiting, so writers are not starved.
class ReadersWriterLock {
public:
    void lock_shared() noexcept {
        std::atomic<std::uint32_t>& readers = m_slots[ThreadSlot()].readers;
        // The count is raised before the flag is read, and a writer sets the flag before it reads the counts: in the
        // single order of these four accesses at least one side sees the other.
        readers.fetch_add(1, std::memory_order_seq_cst);
        if (!m_writing.load(std::memory_order_seq_cst)) return;
        readers.fetch_sub(1, std::memory_order_release);
        EnterBehindWriter(readers);
    }
    void unlock_shared() noexcept { m_slots[ThreadSlot()].readers.fetch_sub(1, std::memory_order_release); }

    void lock() noexcept;
    void unlock() noexcept;

    // A number of the calling thread below Slots; also serves others who spread what threads write.
    static constexpr std::size_t Slots = 32;
    static std::size_t ThreadSlot() noexcept {
        static thread_local const std::size_t slot = s_nextSlot.fetch_add(1, std::memory_order_relaxed) % Slots;
        return slot;
    }

private:
    struct alignas(64) Slot {
        std::atomic<std::uint32_t> readers{0};
    };

    void EnterBehindWriter(std::atomic<std::uint32_t>& readers) noexcept;

    static std::atomic<std::size_t> s_nextSlot;

    std::array<Slot, Slots> m_slots;
    std::mutex m_writers;
    alignas(64) std::atomic<bool> m_writing{false};
};

}  // namespace Orin::DesignDb
