#include "designdb/detail/readers_writer_lock.h"

#include <thread>

namespace Orin::DesignDb {

std::atomic<std::size_t> ReadersWriterLock::s_nextSlot{0};

void ReadersWriterLock::lock() noexcept {
    m_writers.lock();
    m_writing.store(true, std::memory_order_seq_cst);
    for (const Slot& slot : m_slots)
        while (slot.readers.load(std::memory_order_seq_cst) != 0)
            std::this_thread::yield();
}

void ReadersWriterLock::unlock() noexcept {
    m_writing.store(false, std::memory_order_release);
    m_writers.unlock();
}

// Not by waiting on the flag: where the system has no wait on an address, as under Windows, the standard library of g++
// 12 loses a notification that comes between its look at the flag and its sleep.
void ReadersWriterLock::EnterBehindWriter(std::atomic<std::uint32_t>& readers) noexcept {
    const std::lock_guard noWriter(m_writers);
    readers.fetch_add(1, std::memory_order_relaxed);  // the next writer sees it, since it takes the mutex later
}

}  // namespace Orin::DesignDb
