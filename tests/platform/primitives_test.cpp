// One contract for the thread and mutex ports of every platform.
#include <memory>
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

struct End {
    void operator()(NativeMutex* mutex) const {
        DestroyMutex(*mutex);
        FreeMutex(mutex);
    }
};

class MutexPort : public testing::Test {
protected:
    void SetUp() override {
        NativeMutex* const memory = AllocateMutex();
        ASSERT_NE(memory, nullptr);
        ASSERT_TRUE(InitializeMutex(*memory));
        mutex.reset(memory);
    }
    std::unique_ptr<NativeMutex, End> mutex;
};

TEST_F(MutexPort, IsUnlockedAsOftenAsLockedAndByItsHolderOnly) {
    EXPECT_FALSE(UnlockMutex(*mutex));
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(LockMutex(*mutex));
    std::thread([&] { EXPECT_FALSE(UnlockMutex(*mutex)); }).join();
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(UnlockMutex(*mutex));
    EXPECT_FALSE(UnlockMutex(*mutex));
    std::thread([&] { EXPECT_TRUE(LockMutex(*mutex) && UnlockMutex(*mutex)); }).join();
    FreeMutex(nullptr);
}

TEST_F(MutexPort, ThreadsExcludeEachOther) {
    constexpr int Threads = 8, Rounds = 5000;
    long counter = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < Threads; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < Rounds; ++round) {
                LockMutex(*mutex);
                const long before = counter;
                if (round % 64 == 0) std::this_thread::yield();
                counter = before + 1;
                UnlockMutex(*mutex);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, long{Threads} * Rounds);
}

TEST(ThreadId, LivingThreadsHaveDifferentNumbersThatStay) {
    const std::unique_ptr<NativeMutex, End> gate(AllocateMutex());  // keeps all threads alive until all have a number
    ASSERT_TRUE(InitializeMutex(*gate));
    LockMutex(*gate);
    std::vector<ThreadId> ids(16);
    std::vector<std::thread> threads;
    for (ThreadId& id : ids) {
        threads.emplace_back([&] {
            id = CurrentThreadId();
            LockMutex(*gate);
            EXPECT_EQ(CurrentThreadId(), id);
            UnlockMutex(*gate);
        });
    }
    UnlockMutex(*gate);
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
