#include "attributes/utils_exception.h"

#include <future>
#include <optional>
#include <thread>

#include <gtest/gtest.h>

#include "attributes/detail/mutex_steps.h"

#if defined(__clang__)
#pragma clang diagnostic ignored "-Wthread-safety-analysis"  // it takes re-entry and a second release for mistakes
#endif

namespace OrinUtils {
namespace {

using ECode = UtilsException::ECode;

TEST(UtilsException, EveryCodeHasItsTexts) {
    // clang-format off
    const std::pair<std::string, std::string> textsFromMinusOne[] = {
        {"INVALID", "INVALID"}, {"NoError", "No error"}, {"Unknown", "Unknown error"},
        {"NoMemory", "No memory available"}, {"NoMutex", "No mutex available"},
        {"MutexLockFailed", "Could not lock mutex"}, {"MutexOperationFailed", "Mutex operation failed"},
        {"NoSemaphore", "No semaphore available"}, {"SemaphoreWaitFailed", "Could not wait for semaphore"},
        {"SemaphorePostFailed", "Could not post semaphore"}, {"SemaphoreOperationFailed", "Semaphore operation failed"},
        {"NoThread", "No thread available"}, {"ThreadWaitFailed", "Could not wait for thread finish"},
        {"INVALID", "INVALID"},
    };
    // clang-format on
    int code = -1;
    for (const auto& [name, description] : textsFromMinusOne) {
        const UtilsException plain(static_cast<ECode>(code));
        const UtilsException copy = UtilsException(static_cast<ECode>(code), "why");
        EXPECT_EQ(plain.GetErrorText(), description);
        EXPECT_EQ(plain.ToString(), "Utils Exception: Error[" + std::to_string(code) + "," + name + "] Message[]");
        EXPECT_EQ(copy.GetError(), static_cast<ECode>(code));
        EXPECT_EQ(copy.GetMessage(), "why");
        EXPECT_EQ(copy.GetDescription(), description + " (why)");
        ++code;
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
    EXPECT_EQ(Thrown([] { ScopedLock(nullptr).release(); }), "nothing") << "no mutex, no lock";
}

TEST(Mutex, ThreadsExcludeEachOtherAndReEnter) {
    Mutex mutex;
    long counter = 0;
    const auto count = [&] {
        for (int round = 0; round < 20'000; ++round) {
            const ScopedLock outer(&mutex);
            const long before = counter;
            {
                const ScopedLock inner(&mutex);
                if (round % 64 == 0) std::this_thread::yield();
            }
            counter = before + 1;  // lost counts, had the inner lock's end given the mutex up
        }
    };
    std::thread others[] = {std::thread(count), std::thread(count), std::thread(count)};
    for (std::thread& other : others)
        other.join();
    EXPECT_EQ(counter, 60'000);
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

}  // namespace
}  // namespace OrinUtils
