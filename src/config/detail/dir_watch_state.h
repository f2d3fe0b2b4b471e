// The state machine of a directory watch.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "config/detail/directory_watcher.h"

namespace Quill::ConfigDetail {

enum class WatchMode : int { None = 0, Native = 1, Stat = 2, Blind = 3 };

// A mode that one thread may change while another reads it; copied by value.
class WatchModeCell : public std::atomic<WatchMode> {
public:
    WatchModeCell() : atomic(WatchMode::None) {}
    WatchModeCell(const WatchModeCell& other) : atomic(other.load()) {}
    using atomic::operator=;
};

// What DirWatch promises is carried out here. stopWatching may run while another thread is inside changed; everything
// else belongs to one thread at a time. The copy of a state has its fields and shares its handles.
struct DirWatchState {
    std::shared_ptr<DirectoryWatcher> native;  // change notification, stop signal and their lock; null when not native
    std::string dir;
    std::string file;
    int waitSeconds = 1;
    int waitMicroseconds = 0;
    int minPeriodMs = 2000;
    bool firstCall = true;
    bool reportFirst = false;
    WatchModeCell mode;
    FileStatus lastStatus;
    std::shared_ptr<WatchedFile> fd;  // the open file of the stat mode; null when there is none

    void setDirToWatch(const std::string& newDir, const std::string& newFile);
    void setWatchTime(int microseconds, bool reportTheFirst, int minimumPeriodMs);
    bool changed();
    void stopWatching() noexcept;

    void chooseMode();
    bool setupNative();
    bool setupStat();
    bool setupBlind();

    bool changedNative();
    bool changedStat();
    bool changedBlind();

    void stopNative() noexcept;
    void stopStat() noexcept;
    void stopBlind() noexcept;

    int cycleMs() const noexcept { return waitSeconds * 1000 + waitMicroseconds / 1000; }
    void doSleep() const;
    void doSleep(int ms) const;

    // Goes on blind, unless the watch has been stopped; false when it has.
    bool error() noexcept;

private:
    bool stop() noexcept;
};

}  // namespace Quill::ConfigDetail
