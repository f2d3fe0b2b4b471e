// The system's re-entrant mutex, as a port that reports failure and throws nothing.
#pragma once

#include "platform/export.h"

namespace Quill::Platform {

// A mutex of the operating system. The thread that holds it may lock it again and unlocks it as many times.
struct NativeMutex;

// The four steps of a mutex's life are apart, so that a caller can tell which one failed.
PLATFORMUTILS_EXPORT NativeMutex* AllocateMutex() noexcept;  // null when there is no memory; freed by FreeMutex
PLATFORMUTILS_EXPORT bool InitializeMutex(NativeMutex& mutex) noexcept;
PLATFORMUTILS_EXPORT void DestroyMutex(NativeMutex& mutex) noexcept;  // undoes InitializeMutex; the mutex is not held
PLATFORMUTILS_EXPORT void FreeMutex(NativeMutex* mutex) noexcept;     // undoes AllocateMutex; null is allowed

PLATFORMUTILS_EXPORT bool LockMutex(NativeMutex& mutex) noexcept;    // waits; false when the system refuses
PLATFORMUTILS_EXPORT bool UnlockMutex(NativeMutex& mutex) noexcept;  // false when the caller does not hold it

}  // namespace Quill::Platform
