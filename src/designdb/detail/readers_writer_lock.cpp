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
    m_writing.notify_all();
    m_writers.unlock();
}

}  // namespace Orin::DesignDb
