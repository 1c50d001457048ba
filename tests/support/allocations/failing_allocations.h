// failing_allocations.h - an allocator that fails on demand
//
// Replaces operator new and delete in the program that links it. On Linux this also affects the
// shared libraries it loads; on Windows each library has its own allocator. Of the C functions only
// malloc and realloc can fail, on Linux, when called by the program itself.
// ThreadSanitizer does not support a replaced allocator: its builds omit the tests that use this
// one.
#pragma once

#include <cstddef>

namespace support {

/// Which allocations fail: one and all that follow it, or only that one.
enum class Refusal { kAllFollowing, kOne };

// All functions affect or report the allocations of the calling thread only.

/// Lets the next `granted` allocations succeed; `refusal` selects how many fail after that.
void RefuseAllocationsAfter(int granted, Refusal refusal = Refusal::kAllFollowing);
/// Lets all allocations succeed again. True when one has failed since RefuseAllocationsAfter.
bool GrantAllocations();
/// Registers an allocation; false when it must fail. Called by the allocators.
bool TakeAllocation() noexcept;
/// Allocates memory without registering the allocation. Called by the allocators.
void* PlainMalloc(std::size_t size) noexcept;
/// True when an allocation has failed since RefuseAllocationsAfter.
bool AllocationWasRefused();
/// Number of allocations so far.
int AllocationCount();

/// Lets all allocations of this thread succeed while the object exists. They do not count as
/// granted.
class AllocationPause {
public:
    AllocationPause();
    ~AllocationPause();
    AllocationPause(const AllocationPause&) = delete;
    AllocationPause& operator=(const AllocationPause&) = delete;

private:
    const int left;
};

/// Runs `operation` repeatedly: each time another of its allocations fails, the first one first,
/// and in the last run none. Returns the number of its allocations. Checks in `operation` must
/// follow a call of GrantAllocations, since they allocate memory themselves.
template <typename Operation>
int RefuseEachAllocation(const Operation& operation, Refusal refusal = Refusal::kAllFollowing) {
    for (int granted = 0;; ++granted) {
        RefuseAllocationsAfter(granted, refusal);
        operation();
        if (!GrantAllocations()) {
            return granted;
        }
    }
}

/// RefuseEachAllocation with kOne and then with kAllFollowing.
template <typename Operation>
int RefuseEachAllocationBothWays(const Operation& operation) {
    RefuseEachAllocation(operation, Refusal::kOne);
    return RefuseEachAllocation(operation, Refusal::kAllFollowing);
}

/// Number of allocations that `operation` makes.
template <typename Operation>
int CountAllocations(const Operation& operation) {
    const int before = AllocationCount();
    operation();
    return AllocationCount() - before;
}

} // namespace support
