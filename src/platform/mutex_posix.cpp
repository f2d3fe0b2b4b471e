#include <new>

#include <pthread.h>

#include "platform/mutex.h"

namespace Quill::Platform {

struct NativeMutex {
    pthread_mutex_t mutex;
};

NativeMutex* AllocateMutex() noexcept {
    return new (std::nothrow) NativeMutex;
}

bool InitializeMutex(NativeMutex& mutex) noexcept {
    pthread_mutexattr_t attributes;
    if (pthread_mutexattr_init(&attributes) != 0) return false;
    const bool done = pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE) == 0 &&
                      pthread_mutex_init(&mutex.mutex, &attributes) == 0;
    pthread_mutexattr_destroy(&attributes);
    return done;
}

void DestroyMutex(NativeMutex& mutex) noexcept {
    pthread_mutex_destroy(&mutex.mutex);
}

void FreeMutex(NativeMutex* mutex) noexcept {
    delete mutex;
}

bool LockMutex(NativeMutex& mutex) noexcept {
    return pthread_mutex_lock(&mutex.mutex) == 0;
}

bool UnlockMutex(NativeMutex& mutex) noexcept {
    return pthread_mutex_unlock(&mutex.mutex) == 0;
}

}  // namespace Quill::Platform
