#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/thread.h"

namespace Quill::Platform {

namespace {

thread_local ThreadId t_id = 0;

// A forked process goes on in a thread with another number, but with a copy of the cached one.
void ForgetIdInForkedProcess() {
    static const int registered = pthread_atfork(nullptr, nullptr, [] { t_id = 0; });
    static_cast<void>(registered);  // fails for want of memory only, and then matters to a process that forks only
}

}  // namespace

ThreadId CurrentThreadId() noexcept {
    if (t_id == 0) {
        ForgetIdInForkedProcess();
        t_id = static_cast<ThreadId>(syscall(SYS_gettid));
    }
    return t_id;
}

}  // namespace Quill::Platform
