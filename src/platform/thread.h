// The identity of a thread, as a number.
#pragma once

#include <cstdint>

#include "platform/export.h"

namespace Quill::Platform {

// The system's own 32-bit number of a thread. It is unique among the threads that live at one time and never 0.
using ThreadId = std::uint32_t;

// The calling thread's number. The first call of a thread asks the system; later ones cost a load.
PLATFORMUTILS_EXPORT ThreadId CurrentThreadId() noexcept;

}  // namespace Quill::Platform
