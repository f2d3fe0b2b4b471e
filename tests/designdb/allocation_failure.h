// Lets one allocation through operator new fail. Linking allocation_failure.cpp replaces the operators of the program.
#pragma once

namespace Tests {

// The allocation of the calling thread after the next `passed` ones fails.
void FailAllocation(unsigned passed) noexcept;
// Whether it did since; from now on none fails.
bool AllocationFailed() noexcept;

}  // namespace Tests
