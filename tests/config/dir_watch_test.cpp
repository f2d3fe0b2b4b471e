#include "config/dir_watch.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/temporary.h"

#ifndef _WIN32
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>
#endif

using Quill::DirWatch;
using Tests::SetBack;
using Tests::TemporaryFolder;
namespace fs = std::filesystem;

namespace {

constexpr int kMinute = 60 * 1000 * 1000;  // in microseconds; a test that waits that long has failed

// Whether the poll reports a change, and the milliseconds that it takes.
std::pair<bool, long long> Poll(DirWatch& watch) {
    const auto start = std::chrono::steady_clock::now();
    const bool changed = watch.changed();
    const auto taken = std::chrono::steady_clock::now() - start;
    return {changed, std::chrono::duration_cast<std::chrono::milliseconds>(taken).count()};
}

void Append(const std::string& file) {
    std::ofstream(file, std::ios::app) << "more";
}

// A watch is not returned by value: a copy that is destroyed closes what it shares.
void Start(DirWatch& watch, const std::string& dir, int microseconds, bool reportFirst = false, int minPeriodMs = 0) {
    watch.setWatchTime(microseconds, reportFirst, minPeriodMs);
    watch.setDirToWatch(dir, "");
}

// Whether the watch tells changes from none; a blind one reports a change every time.
bool IsNative(DirWatch& watch) {
    watch.changed();  // takes what has been reported before
    return !watch.changed();
}

}  // namespace

TEST(DirWatch, CycleAndMinimumPeriodSetHowLongAPollTakes) {
    DirWatch fresh;
    const auto [first, firstTakes] = Poll(fresh);
    EXPECT_FALSE(first);
    EXPECT_GE(firstTakes, 2000);
    // clang-format off
    const struct { const char* why; int microseconds; bool reportFirst; int minPeriodMs, atLeast, below; } cases[] = {
        {"seconds and a fraction",            2500000, false, 0,   2500, 3500},
        {"parts of milliseconds are dropped", 999,     false, 0,   0,    500},
        {"the minimum period holds longer",   1000,    false, 700, 700,  1700},
        {"and is not added to the cycle",     700000,  false, 600, 700,  1250},
        {"a first report waits for no cycle", kMinute, true,  0,   0,    500},
        {"but lasts its minimum period",      kMinute, true,  700, 700,  1700},
        {"negative times are none",           -5000000, false, -1, 0,    500},
    };
    // clang-format on
    for (const auto& c : cases) {
        DirWatch watch;
        Start(watch, "no such directory", c.microseconds, c.reportFirst, c.minPeriodMs);
        const auto [changed, ms] = Poll(watch);
        EXPECT_TRUE(changed && ms >= c.atLeast && ms < c.below) << c.why << ": " << changed << " after " << ms;
    }
}

TEST(DirWatch, ReportsModificationsInTheDirectoryAlone) {
    const TemporaryFolder folder;
    folder.Write("old.txt", "old");
    folder.Write("gone.txt", "");
    folder.Write("sub/old.txt", "old");
    const std::string file = folder / "old.txt";
    DirWatch watch;
    Start(watch, folder.Path(), 50000, true);
    // clang-format off
    const struct { const char* why; bool want; std::function<void()> action; } cases[] = {
        {"the first report",            true,  [] {}},
        {"nothing",                     false, [] {}},
        {"a first report once more",    true,  [&] { watch.setDirToWatch(folder.Path(), ""); }},
        {"a write",                     true,  [&] { Append(file); }},
        {"a write by another process",  true,  [&] { EXPECT_EQ(std::system(("echo x> \"" + file + "\"").c_str()), 0); }},
        {"a new file with content",     true,  [&] { Append(folder / "new.txt"); }},
#ifndef _WIN32  // there the system decides what else counts as a write to the directory
        {"a new time of an empty file", true,  [&] { SetBack(folder / "gone.txt"); }},
        {"a change of permissions",     true,  [&] { fs::permissions(file, fs::perms::owner_all); }},
        {"a write below",               false, [&] { Append(folder / "sub/old.txt"); }},
        {"a new empty file",            false, [&] { std::ofstream(folder / "empty.txt"); }},
        {"an empty file deleted",       false, [&] { fs::remove(folder / "gone.txt"); }},
#endif
    };
    // clang-format on
    for (const auto& c : cases) {
        c.action();
        EXPECT_EQ(watch.changed(), c.want) << c.why;
        EXPECT_FALSE(watch.changed()) << c.why << ", which is reported once";
    }
}

TEST(DirWatch, ThousandsOfEventsAreOneChange) {
    const TemporaryFolder folder;
    DirWatch watch;
    Start(watch, folder.Path(), 100000);
    std::ofstream a(folder / "a"), b(folder / "b");
    for (int i = 0; i < 20000; ++i)
        (i % 2 ? a : b) << i << std::flush;  // in turn, so that no two events are merged
    EXPECT_TRUE(watch.changed());
    int further = 0;
    while (further < 10 && watch.changed())
        ++further;
#ifdef _WIN32  // what comes in while a change is taken is the next one
    EXPECT_LT(further, 10);
#else
    EXPECT_EQ(further, 0);
#endif
    a << "one more" << std::flush;
    EXPECT_TRUE(watch.changed()) << "the watch has outlived the overflow of its queue";
}

TEST(DirWatch, WhatIsNotAKnownLocalDirectoryIsWatchedBlind) {
    const TemporaryFolder folder;
    folder.Write("file", "");
    for (const std::string& dir : std::vector<std::string>{"\\\\server\\share", "", "/proc", folder / "file"}) {
        DirWatch watch;
        Start(watch, dir, 30000);
        EXPECT_FALSE(IsNative(watch)) << dir;
    }
}

TEST(DirWatch, AWriteOrAStopEndsALongWaitOfAnotherThreadAtOnce) {
    const TemporaryFolder folder;
    using Owner = std::unique_ptr<DirWatch>;
    // clang-format off
    const struct { const char* why; bool want; std::function<void(Owner& watch, DirWatch& copy)> action; } cases[] = {
        {"a write",          true,  [&](Owner&, DirWatch&) { Append(folder / "file"); }},
        {"a stop",           false, [](Owner& watch, DirWatch&) { watch->stopWatching(); }},
        {"a copy's stop",    false, [](Owner&, DirWatch& copy) { copy.stopWatching(); }},
        {"the watch's end, with the thread still in it", false, [](Owner& watch, DirWatch&) { watch.reset(); }},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        auto watch = std::make_unique<DirWatch>();
        Start(*watch, folder.Path(), 10 * 1000 * 1000, false, 200);
        DirWatch copy(*watch);
        auto poll = std::async(std::launch::async, [raw = watch.get()] { return Poll(*raw); });
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        const auto start = std::chrono::steady_clock::now();
        c.action(watch, copy);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
        const auto [changed, ms] = poll.get();
        EXPECT_EQ(changed, c.want);
        EXPECT_GE(ms, 200) << "the minimum period";
        EXPECT_LT(ms, 1000);
    }
}

TEST(DirWatch, AStoppedWatchStaysStoppedWhateverItsPollerWasDoing) {
    const TemporaryFolder folder;
    DirWatch watch;
    for (int round = 0; round < 120; ++round) {
        SCOPED_TRACE(round);
        Start(watch, folder.Path(), round % 3 ? kMinute : 0);
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
        const auto [changed, ms] = Poll(watch);
        ASSERT_TRUE(!changed && ms < 5000) << ms;
    }
}

#ifndef _WIN32  // signals, numbered handles, and directories that can be moved while they are watched

TEST(DirWatch, ALostDirectoryIsAChangeAndBlindUntilItIsSetAgain) {
    const TemporaryFolder folder;
    const std::string dir = folder / "parent/watched";
    // clang-format off
    const struct { const char* why; std::function<void()> lose; } cases[] = {
        {"deleted", [&] { fs::remove(dir); }},
        {"moved", [&] { fs::rename(dir, folder / "elsewhere"); }},
        {"its parent moved, which no event tells", [&] { fs::rename(folder / "parent", folder / "old parent"); }},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        folder.MakeFolder("parent/watched");
        DirWatch watch;
        Start(watch, dir, 20000);
        ASSERT_TRUE(IsNative(watch));
        c.lose();
        EXPECT_TRUE(watch.changed());
        folder.MakeFolder("parent/watched");
        EXPECT_FALSE(IsNative(watch)) << "made again, it is another directory";
        watch.setDirToWatch(dir, "");
        EXPECT_TRUE(IsNative(watch));
    }
}

TEST(DirWatch, ASignalToThePollingThreadDoesNotEndTheWait) {
    const TemporaryFolder folder;
    DirWatch watch;
    Start(watch, folder.Path(), 300000);
    const auto old = signal(SIGALRM, [](int) {});
    ualarm(50000, 50000);
    const auto [changed, ms] = Poll(watch);
    ualarm(0, 0);
    signal(SIGALRM, old);
    EXPECT_TRUE(!changed && ms >= 300 && ms < 2000) << changed << " after " << ms;
}

TEST(DirWatch, CopiesShareTheHandlesWhichAreClosedOnceAndNeverLeftOpen) {
    const auto openFiles = [] {
        const fs::directory_iterator files("/proc/self/fd");
        return std::distance(begin(files), end(files));
    };
    const TemporaryFolder folder;
    const auto before = openFiles();
    {
        DirWatch first, second;
        first.setWatchTime(20000, false, 0);
        for (int i = 0; i < 40; ++i) {
            first.setDirToWatch(i % 3 ? folder.Path() : folder / "missing", "");
            second = first;
        }
        first.setDirToWatch(folder.Path(), "");
        const auto watching = openFiles();
        second = first;
        DirWatch third(first);
        EXPECT_EQ(openFiles(), watching);
        EXPECT_TRUE(IsNative(third));
        third = DirWatch();
        EXPECT_TRUE(IsNative(first)) << "assigning over a copy closes nothing that others use";

        second.stopWatching();
        EXPECT_EQ(openFiles(), before);
        int reused[3];  // these get the numbers that the handles had
        for (int& number : reused)
            number = ::open("/dev/null", O_RDONLY);
        EXPECT_FALSE(IsNative(first)) << "the others go on blind";
        EXPECT_FALSE(second.changed()) << "and the one that stopped has stopped";
        first.stopWatching();
        second.stopWatching();
        for (const int number : reused)
            EXPECT_EQ(::close(number), 0);

        folder.MakeFolder("lost");
        second.setDirToWatch(folder / "lost", "");
        fs::remove(folder / "lost");
        EXPECT_TRUE(second.changed());
    }
    EXPECT_EQ(openFiles(), before);
}

#endif
