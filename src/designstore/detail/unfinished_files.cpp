#include "designstore/detail/unfinished_files.h"

#include <atomic>
#include <utility>

#include <unistd.h>

namespace Orin::DesignDb {

namespace {

// A signal handler may use neither locks nor memory management, so the names stand ready in a table.
std::atomic<const char*> slots[32];
static_assert(std::atomic<const char*>::is_always_lock_free);

}  // namespace

UnfinishedFiles::UnfinishedFiles(std::vector<std::string> paths) : m_paths(std::move(paths)) {
    m_slots.reserve(m_paths.size());
    std::size_t at = 0;
    for (const std::string& path : m_paths)
        for (bool isEntered = false; !isEntered && at < std::size(slots); ++at) {
            const char* free = nullptr;
            isEntered = slots[at].compare_exchange_strong(free, path.c_str());
            if (isEntered) m_slots.push_back(at);
        }
}

UnfinishedFiles::~UnfinishedFiles() {
    for (const std::size_t slot : m_slots)
        slots[slot].store(nullptr);
}

void UnfinishedFiles::RemoveAll() noexcept {
    for (const std::atomic<const char*>& slot : slots)
        if (const char* const path = slot.load(); path != nullptr) unlink(path);
}

}  // namespace Orin::DesignDb
