// failing_malloc.cpp - a malloc and a realloc that fail on demand
//
// The linker redirects the calls in the program itself to these (--wrap). Both are needed: an
// optimizer turns realloc(nullptr, size) into malloc(size). Not available on Windows, where the
// compiler implements the thread-local counters with these functions.
#include "tests/support/allocations/failing_allocations.h"

#include <cstddef>

extern "C" {
void* __real_malloc(std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
}

void* __wrap_malloc(std::size_t size) {
    return support::TakeAllocation() ? __real_malloc(size) : nullptr;
}

void* __wrap_realloc(void* block, std::size_t size) {
    return support::TakeAllocation() ? __real_realloc(block, size) : nullptr;
}

void* support::PlainMalloc(std::size_t size) noexcept {
    return __real_malloc(size);
}
