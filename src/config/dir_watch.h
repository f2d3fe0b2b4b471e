// Asks, once per cycle, whether a directory has changed.
#pragma once

#include <memory>
#include <string>

#include "quillutils_export.h"

namespace Quill {

namespace ConfigDetail {
struct DirWatchState;
}

// Watches one directory for a thread that polls it.
//
// A directory on a local disk that is not removable is watched by the system's change notification: files in it that
// are modified or whose attributes change, but not the making and deleting of files that stay empty, and nothing in its
// subdirectories. Every other directory (on a network, in user space, removable, unknown or missing) is watched blind:
// each cycle reports a change. So does a directory that is lost while it is watched (deleted, moved, unmounted), from
// then on and until the next setDirToWatch. Hence a reported change asks the caller to look again; it proves nothing.
//
// Threads: one thread calls changed. Meanwhile another may call stopWatching and may destroy the object; it must not
// call anything else. stopWatching ends the wait of a native cycle at once and returns when the system's handles are
// closed. It does not wait for the polling thread, which still sleeps what is left of a blind cycle or of the minimum
// period; the object may be destroyed before that call of changed returns, but not before it begins.
//
// Copies take over settings and state and share the system's handles. They take turns in waiting on them, and one of
// them learns of a given change. The first that stops, or is destroyed, closes the handles for all; the others go on
// blind. Assignment lets go of the target's handles, which closes them unless a copy still has them.
class QUILLUTILS_EXPORT DirWatch {
public:
    // Watches nothing: changed reports no change.
    DirWatch();
    virtual ~DirWatch();
    DirWatch(const DirWatch& other);
    DirWatch& operator=(const DirWatch& other);

    // Ends the current watching and begins that of `dir`. `file` is a second path that is kept with it.
    void setDirToWatch(const std::string& dir, const std::string& file);

    // Sets the wait of one cycle (1 second before the first call), whether the first changed after setDirToWatch
    // reports a change without waiting (no), and the least time that a call of changed takes (2000). The wait counts in
    // whole milliseconds, a rest of microseconds is dropped; negative times count as 0.
    void setWatchTime(int microseconds, bool reportFirst, int minPeriodMs);

    // Polls once: waits up to one cycle for a change, then sleeps up to the minimum period. Whether there was a change.
    bool changed();

    // Watches nothing from now on and closes the system's handles.
    void stopWatching();

private:
    // Shared with the thread that is inside changed, so that it can finish although the object is destroyed.
    std::shared_ptr<ConfigDetail::DirWatchState> m_impl;
};

}  // namespace Quill
