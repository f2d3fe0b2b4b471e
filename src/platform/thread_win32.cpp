#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/thread.h"

namespace Quill::Platform {

ThreadId CurrentThreadId() noexcept {
    return GetCurrentThreadId();
}

}  // namespace Quill::Platform
