#include "attributes/utils_exception.h"

#include <chrono>
#include <exception>
#include <future>
#include <optional>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "attributes/detail/mutex_steps.h"

#if defined(__clang__)
#pragma clang diagnostic ignored "-Wthread-safety-analysis"  // it takes re-entry and a second release for mistakes
#endif

namespace OrinUtils {
namespace {

using ECode = UtilsException::ECode;

TEST(UtilsException, EveryCodeHasItsTexts) {
    struct Case {
        std::int32_t code;
        std::string name, description;
    };
    const Case cases[] = {
        {-1, "INVALID", "INVALID"},
        {0, "NoError", "No error"},
        {1, "Unknown", "Unknown error"},
        {2, "NoMemory", "No memory available"},
        {3, "NoMutex", "No mutex available"},
        {4, "MutexLockFailed", "Could not lock mutex"},
        {5, "MutexOperationFailed", "Mutex operation failed"},
        {6, "NoSemaphore", "No semaphore available"},
        {7, "SemaphoreWaitFailed", "Could not wait for semaphore"},
        {8, "SemaphorePostFailed", "Could not post semaphore"},
        {9, "SemaphoreOperationFailed", "Semaphore operation failed"},
        {10, "NoThread", "No thread available"},
        {11, "ThreadWaitFailed", "Could not wait for thread finish"},
        {12, "INVALID", "INVALID"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.code);
        const UtilsException plain(static_cast<ECode>(c.code));
        const UtilsException copy = UtilsException(static_cast<ECode>(c.code), "why");
        EXPECT_EQ(plain.GetErrorText(), c.description);
        EXPECT_EQ(plain.GetDescription(), c.description + " ()");
        EXPECT_EQ(plain.ToString(), "Utils Exception: Error[" + std::to_string(c.code) + "," + c.name + "] Message[]");
        EXPECT_EQ(copy.GetError(), static_cast<ECode>(c.code));
        EXPECT_EQ(copy.GetMessage(), "why");
        EXPECT_EQ(copy.GetDescription(), c.description + " (why)");
    }
    EXPECT_FALSE((std::is_base_of_v<std::exception, UtilsException>));
}

// A port whose every step can be made to fail; no system mutex is touched.
struct FailingPort {
    enum Step { Nothing, Allocation, Initialization, Locking };
    static inline Step fails = Nothing;
    static inline int freed = 0;

    static Quill::Platform::NativeMutex* Memory() {
        static std::max_align_t memory;
        return reinterpret_cast<Quill::Platform::NativeMutex*>(&memory);
    }
    static Quill::Platform::NativeMutex* Allocate() { return fails == Allocation ? nullptr : Memory(); }
    static bool Initialize(Quill::Platform::NativeMutex&) { return fails != Initialization; }
    static void Free(Quill::Platform::NativeMutex*) { ++freed; }
    static bool Lock(Quill::Platform::NativeMutex&) { return fails != Locking; }
};

template <class Action>
std::string Thrown(Action action) {
    try {
        action();
    } catch (const UtilsException& exception) {
        return exception.ToString();
    }
    return "nothing";
}

TEST(Mutex, EachStepThatFailsHasItsOwnException) {
    const auto create = [] { Detail::CreateMutex<FailingPort>(); };
    const auto lock = [] { Detail::LockMutex<FailingPort>(FailingPort::Memory()); };
    FailingPort::fails = FailingPort::Allocation;
    EXPECT_EQ(Thrown(create), "Utils Exception: Error[2,NoMemory] Message[Could not create mutex]");
    EXPECT_EQ(FailingPort::freed, 0);
    FailingPort::fails = FailingPort::Initialization;
    EXPECT_EQ(Thrown(create), "Utils Exception: Error[3,NoMutex] Message[]");
    EXPECT_EQ(FailingPort::freed, 1);
    FailingPort::fails = FailingPort::Locking;
    EXPECT_EQ(Thrown(create), "nothing");
    EXPECT_EQ(Thrown(lock), "Utils Exception: Error[4,MutexLockFailed] Message[]");
}

TEST(Mutex, DestroyedTwiceItIsGoneAndCanNoLongerBeLocked) {
    Mutex mutex;
    mutex.Destroy();
    mutex.Destroy();
    EXPECT_EQ(Thrown([&] { const ScopedLock lock(&mutex); }), "Utils Exception: Error[4,MutexLockFailed] Message[]");
}

TEST(Mutex, ThreadsExcludeEachOtherAndReEnter) {
    constexpr int Threads = 8, Rounds = 5000;
    Mutex mutex;
    long counter = 0;
    std::vector<std::thread> threads;
    threads.reserve(Threads);
    for (int i = 0; i < Threads; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < Rounds; ++round) {
                ScopedLock outer(&mutex);
                const long before = counter;
                {
                    ScopedLock inner(&mutex);
                    if (round % 64 == 0) std::this_thread::yield();
                }
                counter = before + 1;  // lost counts, had the inner lock's end given the mutex up
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, long{Threads} * Rounds);
}

TEST(ScopedLock, ReleaseGivesUpItsOwnLockAndOnlyOnce) {
    Mutex mutex;
    std::optional<ScopedLock> outer(&mutex);
    std::optional<ScopedLock> inner(&mutex);
    inner->release();
    inner->release();  // would give up the outer lock
    inner.reset();     // so would this
    const auto contender = std::async(std::launch::async, [&] { ScopedLock lock(&mutex); });
    EXPECT_EQ(contender.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
    outer->release();
    EXPECT_EQ(contender.wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

TEST(ScopedLock, OnNoMutexDoesNothing) {
    ScopedLock lock(nullptr);
    lock.release();
}

}  // namespace
}  // namespace OrinUtils
