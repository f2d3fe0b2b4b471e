// Counts what is allocated through operator new, and lets it fail. Linking allocation_counter.cpp replaces the
// operators of the program.
#pragma once

namespace Tests {

// The number of allocations of the calling thread so far.
unsigned Allocations() noexcept;

// The allocation of the calling thread after the next `passed` ones fails.
void FailAllocation(unsigned passed) noexcept;
// Whether it did since; from now on none fails.
bool AllocationFailed() noexcept;

// The number of allocations that `work` makes.
template <class Work>
unsigned AllocationsOf(const Work& work) {
    const unsigned before = Allocations();
    work();
    return Allocations() - before;
}

}  // namespace Tests
