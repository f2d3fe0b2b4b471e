#include "config/dir_watch.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "tests/config/test_support.h"

#ifndef _WIN32
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>
#endif

using Quill::DirWatch;
using Quill::Test::TemporaryFolder;

namespace {

constexpr int kMinute = 60 * 1000 * 1000;  // in microseconds; a test that waits that long has failed

struct Timed {
    bool changed;
    long long ms;
};

Timed Poll(DirWatch& watch) {
    const auto start = std::chrono::steady_clock::now();
    const bool changed = watch.changed();
    const auto end = std::chrono::steady_clock::now();
    return {changed, std::chrono::duration_cast<std::chrono::milliseconds>(end - start).count()};
}

void Sleep(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

void Append(const std::string& file) {
    std::ofstream(file, std::ios::app) << "more";
}

// Whether the watch tells changes from none; a blind one reports a change every time.
bool IsNative(DirWatch& watch) {
    watch.changed();  // takes what has been reported before
    return !watch.changed();
}

#ifndef _WIN32
std::ptrdiff_t OpenFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}
#endif

}  // namespace

TEST(DirWatch, WatchesNothingAndSleepsItsMinimumPeriodAtFirst) {
    DirWatch watch;
    const Timed poll = Poll(watch);
    EXPECT_FALSE(poll.changed);
    EXPECT_GE(poll.ms, 2000);
    EXPECT_LT(poll.ms, 3500);
}

TEST(DirWatch, CycleAndMinimumPeriodSetHowLongAPollTakes) {
    struct Case {
        const char* why;
        int microseconds;
        bool reportFirst;
        int minPeriodMs;
        int atLeast;
        int below;
    };
    const Case cases[] = {
        {"seconds and a fraction", 2500000, false, 0, 2500, 3500},
        {"parts of milliseconds are dropped", 999, false, 0, 0, 500},
        {"the minimum period holds longer", 1000, false, 700, 700, 1700},
        {"and is not added to the cycle", 700000, false, 600, 700, 1250},
        {"a first report waits for no cycle", kMinute, true, 0, 0, 500},
        {"but lasts its minimum period", kMinute, true, 700, 700, 1700},
        {"negative times are none", -5000000, false, -1, 0, 500},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        DirWatch watch;
        watch.setWatchTime(c.microseconds, c.reportFirst, c.minPeriodMs);
        watch.setDirToWatch("no such directory", "");
        const Timed poll = Poll(watch);
        EXPECT_TRUE(poll.changed);
        EXPECT_GE(poll.ms, c.atLeast);
        EXPECT_LT(poll.ms, c.below);
    }
}

TEST(DirWatch, FirstReportComesOnceAfterEachSetDirToWatch) {
    const TemporaryFolder folder;
    DirWatch watch;
    watch.setWatchTime(20000, true, 0);
    for (int round = 0; round < 2; ++round) {
        watch.setDirToWatch(folder.Path(), "");
        EXPECT_TRUE(watch.changed());
        EXPECT_FALSE(watch.changed());
    }
    watch.setDirToWatch(folder.Path(), "");
    watch.stopWatching();
    EXPECT_FALSE(watch.changed());
}

TEST(DirWatch, ReportsModificationsInTheDirectoryAlone) {
    const TemporaryFolder folder;
    folder.Write("old.txt", "old");
    folder.Write("gone.txt", "");
    folder.Write("sub/old.txt", "old");
    const std::string file = folder / "old.txt";
    struct Case {
        const char* why;
        bool want;
        std::function<void()> action;
    };
    const Case cases[] = {
        {"nothing", false, [] {}},
        {"a write", true, [&] { Append(file); }},
        {"a write by another thread", true, [&] { std::thread(Append, file).join(); }},
        {"a write by another process", true, [&] { EXPECT_EQ(std::system(("echo x> \"" + file + "\"").c_str()), 0); }},
        {"a new time of an empty file", true, [&] { std::filesystem::last_write_time(folder / "gone.txt", {}); }},
        {"a new file with content", true, [&] { Append(folder / "new.txt"); }},
#ifndef _WIN32  // there the system's notification sees the directory entry change
        {"a write below", false, [&] { Append(folder / "sub/old.txt"); }},
        {"a new empty file", false, [&] { std::ofstream(folder / "empty.txt"); }},
        {"an empty file deleted", false, [&] { std::filesystem::remove(folder / "gone.txt"); }},
        {"a new folder", false, [&] { folder.MakeFolder("other"); }},
#endif
    };
    DirWatch watch;
    watch.setWatchTime(50000, false, 0);
    watch.setDirToWatch(folder.Path(), "");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        c.action();
        EXPECT_EQ(watch.changed(), c.want);
        EXPECT_FALSE(watch.changed()) << "a change is reported once";
    }
}

TEST(DirWatch, AWriteEndsTheWait) {
    const TemporaryFolder folder;
    folder.Write("old.txt", "");
    DirWatch watch;
    watch.setWatchTime(kMinute, false, 0);
    watch.setDirToWatch(folder.Path(), "");
    const auto writer = std::async(std::launch::async, [&] {
        Sleep(50);
        Append(folder / "old.txt");
    });
    const Timed poll = Poll(watch);
    EXPECT_TRUE(poll.changed);
    EXPECT_LT(poll.ms, 5000);
}

TEST(DirWatch, ThousandsOfEventsAreOneChange) {
    const TemporaryFolder folder;
    DirWatch watch;
    watch.setWatchTime(100000, false, 0);
    watch.setDirToWatch(folder.Path(), "");
    std::ofstream a(folder / "a"), b(folder / "b");
    for (int i = 0; i < 6000; ++i)
        (i % 2 ? a : b) << i << std::flush;  // in turn, so that no two events are merged
    EXPECT_TRUE(watch.changed());
    EXPECT_FALSE(watch.changed());
    a << "one more" << std::flush;
    EXPECT_TRUE(watch.changed()) << "the watch has outlived the overflow of its queue";
}

TEST(DirWatch, WhatIsNotAKnownLocalDirectoryIsWatchedBlind) {
    const TemporaryFolder folder;
    folder.Write("file", "");
    for (const std::string& dir :
         {std::string("\\\\server\\share"), std::string(), folder / "missing", folder / "file", std::string("/proc")}) {
        SCOPED_TRACE(dir);
        DirWatch watch;
        watch.setWatchTime(30000, false, 0);
        watch.setDirToWatch(dir, "");
        EXPECT_TRUE(watch.changed());
        const Timed poll = Poll(watch);
        EXPECT_TRUE(poll.changed);
        EXPECT_GE(poll.ms, 30);
    }
}

TEST(DirWatch, StopEndsALongWaitOfAnotherThreadAtOnce) {
    const TemporaryFolder folder;
    DirWatch watch;
    watch.setWatchTime(10 * 1000 * 1000, false, 0);
    watch.setDirToWatch(folder.Path(), "");
    std::future<Timed> poll = std::async(std::launch::async, [&] { return Poll(watch); });
    Sleep(100);
    const auto start = std::chrono::steady_clock::now();
    watch.stopWatching();
    const Timed result = poll.get();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    EXPECT_FALSE(result.changed);
    EXPECT_GE(result.ms, 90) << "the thread was waiting";
    EXPECT_FALSE(watch.changed());
}

TEST(DirWatch, AStoppedWatchStaysStoppedWhateverItsPollerWasDoing) {
    const TemporaryFolder folder;
    folder.Write("busy", "");
    DirWatch watch;
    for (int round = 0; round < 120; ++round) {
        SCOPED_TRACE(round);
        watch.setWatchTime(round % 3 ? kMinute : 0, false, 0);
        watch.setDirToWatch(folder.Path(), "");
        std::atomic<bool> leave{false};
        const auto poller = std::async(std::launch::async, [&] {
            while (!leave)
                watch.changed();
        });
        if (round % 2) Append(folder / "busy");
        std::this_thread::sleep_for(std::chrono::microseconds(round * 7));
        watch.stopWatching();
        leave = true;
        poller.wait();
        const Timed poll = Poll(watch);
        ASSERT_FALSE(poll.changed);
        ASSERT_LT(poll.ms, 5000);
    }
}

TEST(DirWatch, MayBeDestroyedWhileAPollSleepsItsMinimumPeriod) {
    const TemporaryFolder folder;
    auto watch = std::make_unique<DirWatch>();
    watch->setWatchTime(kMinute, false, 300);
    watch->setDirToWatch(folder.Path(), "");
    std::future<Timed> poll = std::async(std::launch::async, [raw = watch.get()] { return Poll(*raw); });
    Sleep(50);
    watch->stopWatching();
    watch.reset();
    const Timed result = poll.get();
    EXPECT_FALSE(result.changed);
    EXPECT_GE(result.ms, 300);
    EXPECT_LT(result.ms, 5000);
}

#ifndef _WIN32  // signals, numbered handles, and directories that can be moved while they are watched

TEST(DirWatch, ALostDirectoryIsAChangeAndBlindUntilItIsSetAgain) {
    const TemporaryFolder folder;
    const std::string dir = folder / "parent/watched";
    const std::filesystem::path parent(folder / "parent");
    struct Case {
        const char* why;
        std::function<void()> lose;
    };
    const Case cases[] = {
        {"deleted", [&] { std::filesystem::remove_all(dir); }},
        {"moved", [&] { std::filesystem::rename(dir, folder / "elsewhere"); }},
        {"its parent moved, which no event tells", [&] { std::filesystem::rename(parent, folder / "old parent"); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        folder.MakeFolder("parent/watched");
        DirWatch watch;
        watch.setWatchTime(20000, false, 0);
        watch.setDirToWatch(dir, "");
        ASSERT_FALSE(watch.changed());
        c.lose();
        EXPECT_TRUE(watch.changed());
        folder.MakeFolder("parent/watched");
        EXPECT_FALSE(IsNative(watch)) << "made again, it is another directory";
        watch.setDirToWatch(dir, "");
        EXPECT_TRUE(IsNative(watch));
    }
}

TEST(DirWatch, ASignalToThePollingThreadDoesNotEndTheWait) {
    struct sigaction action {
    }, old{};
    action.sa_handler = [](int) {};
    ASSERT_EQ(sigaction(SIGUSR1, &action, &old), 0);
    const TemporaryFolder folder;
    DirWatch watch;
    watch.setWatchTime(300000, false, 0);
    watch.setDirToWatch(folder.Path(), "");
    std::atomic<bool> done{false};
    const auto sender = std::async(std::launch::async, [&done, target = pthread_self()] {
        for (; !done; Sleep(20))
            pthread_kill(target, SIGUSR1);
    });
    const Timed poll = Poll(watch);
    done = true;
    sender.wait();
    sigaction(SIGUSR1, &old, nullptr);
    EXPECT_FALSE(poll.changed);
    EXPECT_GE(poll.ms, 300);
    EXPECT_LT(poll.ms, 2000);
}

TEST(DirWatch, CopiesShareTheHandlesAndNothingIsClosedTwice) {
    const TemporaryFolder folder;
    const std::ptrdiff_t before = OpenFiles();
    DirWatch first;
    first.setWatchTime(20000, false, 0);
    first.setDirToWatch(folder.Path(), "");
    const std::ptrdiff_t watching = OpenFiles();
    EXPECT_GT(watching, before);
    DirWatch second(first);
    DirWatch third;
    third = first;
    EXPECT_EQ(OpenFiles(), watching);
    EXPECT_TRUE(IsNative(second));
    EXPECT_TRUE(IsNative(third));

    third = DirWatch();
    EXPECT_TRUE(IsNative(first)) << "assigning over a copy closes nothing that others use";
    first.setWatchTime(kMinute, false, 0);
    std::future<Timed> poll = std::async(std::launch::async, [&] { return Poll(first); });
    Sleep(50);
    second.stopWatching();
    EXPECT_LT(poll.get().ms, 5000) << "a copy's stop ends the wait of the others";
    EXPECT_EQ(OpenFiles(), before);

    first.setWatchTime(20000, false, 0);
    EXPECT_FALSE(IsNative(first)) << "the others go on blind";
    EXPECT_FALSE(second.changed()) << "and the one that stopped has stopped";
    int reused[3];  // these get the numbers that the handles had
    for (int& number : reused)
        number = ::open("/dev/null", O_RDONLY);
    first.stopWatching();
    { const DirWatch copy(first); }
    for (const int number : reused)
        EXPECT_EQ(::close(number), 0);
}

TEST(DirWatch, LeavesNoOpenFilesBehind) {
    const TemporaryFolder folder;
    folder.MakeFolder("lost");
    const std::ptrdiff_t before = OpenFiles();
    {
        DirWatch watch;
        DirWatch other;
        watch.setWatchTime(0, false, 0);
        for (int i = 0; i < 60; ++i) {
            watch.setDirToWatch(i % 3 ? folder.Path() : folder / "missing", "");
            other = watch;
        }
        watch.setDirToWatch(folder / "lost", "");
        std::filesystem::remove(folder / "lost");
        EXPECT_TRUE(watch.changed());
        watch.stopWatching();
        watch.stopWatching();
        other.setDirToWatch(folder.Path(), "");
    }
    EXPECT_EQ(OpenFiles(), before);
}

#endif
