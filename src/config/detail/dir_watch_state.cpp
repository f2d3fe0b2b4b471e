#include "config/detail/dir_watch_state.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace Quill::ConfigDetail {

namespace {
constexpr int kMicrosecondsPerSecond = 1000000;
}

void DirWatchState::setDirToWatch(const std::string& newDir, const std::string& newFile) {
    stop();
    dir = newDir;
    file = newFile;
    firstCall = true;
    chooseMode();
}

void DirWatchState::setWatchTime(int microseconds, bool reportTheFirst, int minimumPeriodMs) {
    microseconds = std::max(microseconds, 0);
    waitSeconds = microseconds / kMicrosecondsPerSecond;
    waitMicroseconds = microseconds % kMicrosecondsPerSecond;
    reportFirst = reportTheFirst;
    minPeriodMs = std::max(minimumPeriodMs, 0);
}

bool DirWatchState::changed() {
    // A clock that nobody can set: with the time of day, a correction would shorten or skip the minimum period.
    const auto start = std::chrono::steady_clock::now();
    const WatchMode current = mode;
    bool result = false;
    if (current != WatchMode::None && reportFirst && firstCall) {
        result = true;
    } else {
        switch (current) {
            case WatchMode::None:
                break;
            case WatchMode::Native:
                result = changedNative();
                break;
            case WatchMode::Stat:
                result = changedStat();
                break;
            case WatchMode::Blind:
                result = changedBlind();
                break;
        }
    }
    firstCall = false;
    const auto taken =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    if (taken < minPeriodMs) doSleep(minPeriodMs - static_cast<int>(taken));
    return result;
}

void DirWatchState::stopWatching() noexcept {
    // Only the call that ended the watching clears the texts, so that two threads that stop do not meet here.
    if (!stop()) return;
    dir.clear();
    file.clear();
}

// False when nothing was being watched. The mode goes first: a polling thread that finds its handles closed sees by it
// that it has been stopped and does not go on blind.
bool DirWatchState::stop() noexcept {
    if (mode.exchange(WatchMode::None) == WatchMode::None) return false;
    // A watch that has lost its directory is blind and still has handles, so the mode does not tell what there is.
    stopNative();
    stopStat();
    stopBlind();
    return true;
}

void DirWatchState::chooseMode() {
    setupNative() || setupBlind();
}

bool DirWatchState::setupNative() {
    native = DirectoryWatcher::Open(dir);
    if (!native) return false;
    mode = WatchMode::Native;
    return true;
}

// Comparing a file's status is never chosen: a file system without change notification is best watched blind, since the
// status of one file says nothing about the others.
bool DirWatchState::setupStat() {
    return false;
}

bool DirWatchState::setupBlind() {
    mode = WatchMode::Blind;
    return true;
}

bool DirWatchState::changedNative() {
    switch (native->Wait(cycleMs())) {
        case DirectoryEvent::None:
            return false;
        case DirectoryEvent::Change:
            return true;
        case DirectoryEvent::Lost:
            error();
            return true;
        case DirectoryEvent::Closed:
            break;
    }
    if (!error()) return false;
    doSleep();  // a copy has closed the handles
    return true;
}

bool DirWatchState::changedStat() {
    doSleep();
    const std::optional<FileStatus> status = fd ? fd->Status() : std::nullopt;
    if (!status) return error();
    if (*status == lastStatus) return false;
    lastStatus = *status;
    return true;
}

bool DirWatchState::changedBlind() {
    doSleep();
    return true;
}

void DirWatchState::stopNative() noexcept {
    if (native) native->Close();
}

void DirWatchState::stopStat() noexcept {
    if (fd) fd->Close();
}

void DirWatchState::stopBlind() noexcept {}

void DirWatchState::doSleep() const {
    doSleep(cycleMs());
}

void DirWatchState::doSleep(int ms) const {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

bool DirWatchState::error() noexcept {
    WatchMode current = mode;
    while (current != WatchMode::None && !mode.compare_exchange_weak(current, WatchMode::Blind)) {
    }
    return current != WatchMode::None;
}

}  // namespace Quill::ConfigDetail
