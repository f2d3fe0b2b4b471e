#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <atomic>
#include <new>

#include <windows.h>

#include "platform/mutex.h"

namespace Quill::Platform {

// A critical section does not say who holds it, and leaving one that is not held corrupts it, so the holder is kept
// beside it. Only the holder writes the two fields. Another thread may read `owner` at any time, but it never reads
// its own number there.
struct NativeMutex {
    CRITICAL_SECTION section;
    std::atomic<DWORD> owner{0};
    unsigned long depth = 0;
};

NativeMutex* AllocateMutex() noexcept {
    return new (std::nothrow) NativeMutex;
}

// The form that returns its failure; the plain one raises a structured exception instead.
bool InitializeMutex(NativeMutex& mutex) noexcept {
    return InitializeCriticalSectionAndSpinCount(&mutex.section, 0) != FALSE;
}

void DestroyMutex(NativeMutex& mutex) noexcept {
    DeleteCriticalSection(&mutex.section);
}

void FreeMutex(NativeMutex* mutex) noexcept {
    delete mutex;
}

bool LockMutex(NativeMutex& mutex) noexcept {
    EnterCriticalSection(&mutex.section);
    mutex.owner.store(GetCurrentThreadId(), std::memory_order_relaxed);
    ++mutex.depth;
    return true;
}

bool UnlockMutex(NativeMutex& mutex) noexcept {
    if (mutex.owner.load(std::memory_order_relaxed) != GetCurrentThreadId()) return false;
    if (--mutex.depth == 0) mutex.owner.store(0, std::memory_order_relaxed);
    LeaveCriticalSection(&mutex.section);
    return true;
}

}  // namespace Quill::Platform
