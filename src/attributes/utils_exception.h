// The library's own synchronisation: a mutex, a lock for a scope, and the exception by which both report failure.
#pragma once

#include <cstdint>
#include <string>

#include "platform/mutex.h"
#include "platform/thread_annotations.h"
#include "quillutils_export.h"

namespace OrinUtils {

// A failure with a code of a fixed list and an optional message. Thrown by value, caught by reference. It derives from
// nothing: a handler of standard exceptions does not catch it.
//
// The order of the virtual operations is part of the binary interface. On Windows <windows.h> defines GetMessage as a
// macro; a source that includes both must #undef it before it includes this header.
class QUILLUTILS_EXPORT UtilsException {
public:
    enum class ECode : std::int32_t {
        NoError = 0,
        Unknown = 1,
        NoMemory = 2,
        NoMutex = 3,
        MutexLockFailed = 4,
        MutexOperationFailed = 5,
        NoSemaphore = 6,
        SemaphoreWaitFailed = 7,
        SemaphorePostFailed = 8,
        SemaphoreOperationFailed = 9,
        NoThread = 10,
        ThreadWaitFailed = 11,
    };

    // Any value is taken as a code; one outside the list has the texts "INVALID".
    explicit UtilsException(ECode error);
    UtilsException(ECode error, const std::string& message);
    UtilsException(const UtilsException& other);
    UtilsException& operator=(const UtilsException& other);

    virtual ~UtilsException();
    virtual ECode GetError() const;
    virtual std::string GetErrorText() const;  // what the code means, in words: "No memory available"
    virtual const std::string& GetMessage() const;
    virtual std::string GetDescription() const;  // for users: "No memory available (Could not create mutex)"
    // For logs: "Utils Exception: Error[2,NoMemory] Message[Could not create mutex]".
    virtual std::string ToString() const;

private:
    ECode m_error;
    std::string m_message;
};

// A re-entrant mutex: the thread that holds it may lock it again and unlocks it as many times. Usable from any thread.
// Clang's thread-safety analysis follows it, but takes a second lock within one function for a mistake.
class QUILLUTILS_EXPORT QUILL_CAPABILITY("mutex") Mutex {
public:
    // Throws UtilsException: NoMemory with the message "Could not create mutex" when there is no memory for it, NoMutex
    // when the system refuses one.
    Mutex();
    ~Mutex();

    // Waits until no other thread holds the mutex. Throws UtilsException with MutexLockFailed when the system refuses,
    // or after Destroy; the mutex is then not held.
    void Lock() QUILL_ACQUIRE();

    // Gives up one Lock of the calling thread. Does nothing when that thread does not hold the mutex, or after Destroy.
    void Unlock() QUILL_RELEASE();

    // Gives the system's mutex back before the object's own end; nobody holds it, and no other thread uses this object
    // any more. A second call does nothing.
    void Destroy() noexcept;

    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

private:
    Quill::Platform::NativeMutex* m_mutex;  // null once destroyed
};

// Holds a mutex for a scope. One thread's.
class QUILLUTILS_EXPORT QUILL_SCOPED_CAPABILITY ScopedLock {
public:
    // Locks `mutex`, which must outlive this object or its release(); null is allowed and locks nothing. Throws what
    // Mutex::Lock throws.
    explicit ScopedLock(Mutex* mutex) QUILL_ACQUIRE(mutex);
    ~ScopedLock() QUILL_RELEASE();

    // Unlocks now, and forgets the mutex. A second call does nothing.
    void release() QUILL_RELEASE();

    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

private:
    Mutex* m_mutex;
    bool m_locked = false;
};

}  // namespace OrinUtils
