// Where operations ask whether a test wants them to fail.
#pragma once

#include <atomic>

#include "orin/index.h"

namespace Orin::DesignDb {

extern std::atomic<bool> g_faultsWatched;

// The code with which this call fails, or 0.
int CheckFault(const char* operation, const Index& object);

inline int Fault(const char* operation, const Index& object) {
    if (!g_faultsWatched.load(std::memory_order_relaxed)) [[likely]]
        return 0;
    return CheckFault(operation, object);
}

}  // namespace Orin::DesignDb
