// One contract for the thread and mutex ports of every platform.
#include <atomic>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/mutex.h"
#include "platform/thread.h"

#if !defined(_WIN32)
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace Quill::Platform {
namespace {

#if defined(__SANITIZE_THREAD__)
constexpr bool SanitizerForbidsMisuse = true;
#else
constexpr bool SanitizerForbidsMisuse = false;
#endif

TEST(MutexPort, IsUnlockedAsOftenAsLockedAndByItsHolderOnly) {
    NativeMutex* const mutex = AllocateMutex();
    ASSERT_TRUE(mutex != nullptr && InitializeMutex(*mutex));
    const auto refusesUnlock = [&] { EXPECT_TRUE(SanitizerForbidsMisuse || !UnlockMutex(*mutex)); };
    refusesUnlock();
    EXPECT_TRUE(LockMutex(*mutex) && LockMutex(*mutex));
    std::thread(refusesUnlock).join();
    EXPECT_TRUE(UnlockMutex(*mutex) && UnlockMutex(*mutex));
    refusesUnlock();
    std::thread([&] { EXPECT_TRUE(LockMutex(*mutex) && UnlockMutex(*mutex)); }).join();
    DestroyMutex(*mutex);
    FreeMutex(mutex);
    FreeMutex(nullptr);
}

TEST(ThreadId, LivingThreadsHaveDifferentNumbersThatStay) {
    std::atomic<int> numbered{0};  // all threads live until all have a number
    std::vector<ThreadId> ids(16);
    std::vector<std::thread> threads;
    for (ThreadId& id : ids) {
        threads.emplace_back([&] {
            id = CurrentThreadId();
            for (++numbered; numbered < 16;)
                std::this_thread::yield();
            EXPECT_EQ(CurrentThreadId(), id);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::set<ThreadId> all(ids.begin(), ids.end());
    all.insert({CurrentThreadId(), 0});
    EXPECT_EQ(all.size(), 18U);
}

#if !defined(_WIN32)
TEST(ThreadId, AForkedProcessHasItsOwn) {
    const ThreadId parent = CurrentThreadId();
    const pid_t child = fork();
    if (child == 0)
        _exit(CurrentThreadId() != parent && CurrentThreadId() == static_cast<ThreadId>(getpid()) ? 42 : 43);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 42) << status;
}
#endif

}  // namespace
}  // namespace Quill::Platform
