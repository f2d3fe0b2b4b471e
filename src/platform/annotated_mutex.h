// The standard mutex, made known to clang's thread-safety analysis. For the inside of the libraries: members that it
// guards are marked QUILL_GUARDED_BY, and the compiler finds the access that forgot the lock.
#pragma once

#include <mutex>

#include "platform/thread_annotations.h"

namespace Quill::Platform {

// Not re-entrant. Usable from any static initialiser: construction is constant.
class QUILL_CAPABILITY("mutex") Mutex {
public:
    void lock() QUILL_ACQUIRE() { m_mutex.lock(); }
    void unlock() QUILL_RELEASE() { m_mutex.unlock(); }
    bool try_lock() QUILL_TRY_ACQUIRE(true) { return m_mutex.try_lock(); }

private:
    std::mutex m_mutex;
};

// Holds a mutex, which must outlive it, from construction to the end of the scope.
class QUILL_SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutex) QUILL_ACQUIRE(mutex) : m_mutex(mutex) { m_mutex.lock(); }
    ~MutexLock() QUILL_RELEASE() { m_mutex.unlock(); }

    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    Mutex& m_mutex;
};

}  // namespace Quill::Platform
