// The calling thread's number, for every callback to ask.
#pragma once

#include "platform/thread.h"

namespace NQuillUtils::NEvents {

// Kept in this library, at a fixed distance from the thread's own pointer: a callback that is delivered at once costs
// little more than two calls, and a call into another library would be a third.
inline Quill::Platform::ThreadId ThisThread() noexcept {
#ifdef _WIN32
    return Quill::Platform::CurrentThreadId();
#else
    __attribute__((tls_model("initial-exec"))) static thread_local Quill::Platform::ThreadId t_id = 0;
    if (t_id == 0) [[unlikely]]
        t_id = Quill::Platform::CurrentThreadId();
    return t_id;
#endif
}

}  // namespace NQuillUtils::NEvents
