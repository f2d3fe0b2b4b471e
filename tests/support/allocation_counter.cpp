// In a file of its own: where the compiler sees both sides it takes malloc and delete for a mismatch.
#include "tests/support/allocation_counter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local unsigned allocations = 0;
thread_local bool armed = false;
thread_local bool failed = false;
thread_local unsigned left = 0;

}  // namespace

unsigned Tests::Allocations() noexcept {
    return allocations;
}

void Tests::FailAllocation(unsigned passed) noexcept {
    left = passed;
    failed = false;
    armed = true;
}

bool Tests::AllocationFailed() noexcept {
    armed = false;
    return failed;
}

// What sorts take their room by; null when it fails.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++allocations;
    if (armed && left-- == 0) {
        armed = false;
        failed = true;
        return nullptr;
    }
    return std::malloc(size != 0 ? size : 1);
}

void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
