// failing_allocations.h - an allocator that runs out of memory on demand
//
// Replaces the allocator of the program that uses it. On Linux that reaches into the libraries too,
// where they share a run-time library; on Windows each library has an allocator of its own. Of the
// C functions only realloc can be refused, on Linux, in what is linked into the program itself.
// ThreadSanitizer allows no other allocator: tests that use this are in files named
// out_of_memory_test.cpp or out_of_memory_posix_test.cpp, which its builds leave out.
#pragma once

namespace support {

/// What is refused: all allocations from one on, or that one only.
enum class Refusal { kAllBehind, kOne };

/// Grants this thread so many more allocations and refuses what comes behind them.
void RefuseAllocationsAfter(int granted, Refusal refusal = Refusal::kAllBehind);
/// Grants all again; answers whether one was refused since the refusing began.
bool GrantAllocations();
/// Takes note of an allocation of this thread; false when it is to be refused. For allocators.
bool TakeAllocation() noexcept;
/// True when one was refused since the refusing began.
bool AllocationWasRefused();
/// Allocations of this thread so far.
int AllocationCount();

/// Grants this thread all allocations for the object's life; they are not counted down.
class AllocationPause {
public:
    AllocationPause();
    ~AllocationPause();
    AllocationPause(const AllocationPause&) = delete;
    AllocationPause& operator=(const AllocationPause&) = delete;

private:
    const int left;
};

/// Runs `operation` once with each of its allocations refused, and once with all granted. Answers
/// how many allocations it makes. Checks inside the operation come after GrantAllocations, since
/// they allocate themselves.
template <typename Operation>
int RefuseEachAllocation(const Operation& operation, Refusal refusal = Refusal::kAllBehind) {
    for (int granted = 0;; ++granted) {
        RefuseAllocationsAfter(granted, refusal);
        operation();
        if (!GrantAllocations()) {
            return granted;
        }
    }
}

/// The same for each allocation alone, and then for each with all behind it.
template <typename Operation>
int RefuseEachAllocationBothWays(const Operation& operation) {
    RefuseEachAllocation(operation, Refusal::kOne);
    return RefuseEachAllocation(operation, Refusal::kAllBehind);
}

template <typename Operation>
int CountAllocations(const Operation& operation) {
    const int before = AllocationCount();
    operation();
    return AllocationCount() - before;
}

} // namespace support
