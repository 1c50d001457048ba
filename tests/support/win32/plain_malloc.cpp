// plain_malloc.cpp - the malloc of the C library
#include "tests/support/allocations/failing_allocations.h"

#include <cstdlib>

void* support::PlainMalloc(std::size_t size) noexcept {
    return std::malloc(size);
}
