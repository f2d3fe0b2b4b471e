// Counts what is allocated through operator new. Linking allocation_counter.cpp replaces the operators of the program.
#pragma once

namespace Tests {

// The number of allocations of the calling thread so far.
unsigned Allocations() noexcept;

// The number of allocations that `work` makes.
template <class Work>
unsigned AllocationsOf(const Work& work) {
    const unsigned before = Allocations();
    work();
    return Allocations() - before;
}

}  // namespace Tests
