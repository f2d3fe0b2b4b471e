// The steps of a mutex's life that can fail, each with the exception that reports it.
#pragma once

#include "attributes/utils_exception.h"
#include "platform/mutex.h"

namespace OrinUtils::Detail {

// The system's mutex. Another port with the same operations can stand in for it where failures are wanted.
struct SystemMutexPort {
    static Quill::Platform::NativeMutex* Allocate() noexcept { return Quill::Platform::AllocateMutex(); }
    static bool Initialize(Quill::Platform::NativeMutex& mutex) noexcept {
        return Quill::Platform::InitializeMutex(mutex);
    }
    static void Free(Quill::Platform::NativeMutex* mutex) noexcept { Quill::Platform::FreeMutex(mutex); }
    static bool Lock(Quill::Platform::NativeMutex& mutex) noexcept { return Quill::Platform::LockMutex(mutex); }
};

template <class Port>
Quill::Platform::NativeMutex* CreateMutex() {
    using ECode = UtilsException::ECode;
    Quill::Platform::NativeMutex* const mutex = Port::Allocate();
    if (mutex == nullptr) throw UtilsException(ECode::NoMemory, "Could not create mutex");
    if (!Port::Initialize(*mutex)) {
        Port::Free(mutex);
        throw UtilsException(ECode::NoMutex);
    }
    return mutex;
}

template <class Port>
void LockMutex(Quill::Platform::NativeMutex* mutex) {
    if (mutex == nullptr || !Port::Lock(*mutex)) throw UtilsException(UtilsException::ECode::MutexLockFailed);
}

}  // namespace OrinUtils::Detail
