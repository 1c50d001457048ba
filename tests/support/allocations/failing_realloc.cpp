// failing_realloc.cpp - a realloc that runs out of memory on demand
//
// The linker leads the program's own calls of realloc here. Not on Windows, where the compiler's
// thread-local variables, with which the allocations are counted, call realloc themselves.
#include "tests/support/allocations/failing_allocations.h"

#include <cstddef>

extern "C" {
void* __real_realloc(void* block, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
}

void* __wrap_realloc(void* block, std::size_t size) {
    return support::TakeAllocation() ? __real_realloc(block, size) : nullptr;
}
