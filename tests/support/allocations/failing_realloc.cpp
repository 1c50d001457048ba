// failing_realloc.cpp - a realloc that fails on demand
//
// The linker redirects calls of realloc in the program itself to this one (--wrap=realloc). Not
// available on Windows, where the compiler implements the thread-local counters with realloc.
#include "tests/support/allocations/failing_allocations.h"

#include <cstddef>

extern "C" {
void* __real_realloc(void* block, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
}

void* __wrap_realloc(void* block, std::size_t size) {
    return support::TakeAllocation() ? __real_realloc(block, size) : nullptr;
}
