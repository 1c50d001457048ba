// failing_allocations.cpp - an allocator that fails on demand
#include "tests/support/allocations/failing_allocations.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace {

constexpr int kAll = -1;
thread_local int allocationsLeft = kAll;
thread_local bool refusesOneOnly = false;
thread_local bool refused = false;
thread_local int allocationCount = 0;

void* Allocate(std::size_t size) noexcept {
    return support::TakeAllocation() ? support::PlainMalloc(size > 0 ? size : 1) : nullptr;
}

void* AllocateOrThrow(std::size_t size) {
    if (void* const memory = Allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

} // namespace

namespace support {

bool TakeAllocation() noexcept {
    ++allocationCount;
    if (allocationsLeft == 0) {
        refused = true;
        allocationsLeft = refusesOneOnly ? kAll : 0;
        return false;
    }
    if (allocationsLeft > 0) {
        --allocationsLeft;
    }
    return true;
}

void RefuseAllocationsAfter(int granted, Refusal refusal) {
    refused = false;
    refusesOneOnly = refusal == Refusal::kOne;
    allocationsLeft = granted;
}

AllocationPause::AllocationPause() : left(std::exchange(allocationsLeft, kAll)) {}

AllocationPause::~AllocationPause() {
    allocationsLeft = left;
}

bool GrantAllocations() {
    allocationsLeft = kAll;
    return refused;
}

bool AllocationWasRefused() {
    return refused;
}

int AllocationCount() {
    return allocationCount;
}

} // namespace support

void* operator new(std::size_t size) {
    return AllocateOrThrow(size);
}

void* operator new[](std::size_t size) {
    return AllocateOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return Allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return Allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept {
    std::free(memory);
}
