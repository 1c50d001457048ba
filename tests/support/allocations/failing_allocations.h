// failing_allocations.h - an allocator that runs out of memory on demand
//
// Replaces the allocator of the program that uses it. On Linux that reaches into the libraries too,
// where they share a run-time library; on Windows each library has an allocator of its own.
// ThreadSanitizer allows no other allocator: tests that use this stand in files whose names end in
// out_of_memory_test.cpp and are left out of its builds.
#pragma once

namespace support {

/// Grants this thread so many more allocations and refuses all behind them.
void RefuseAllocationsAfter(int granted);
/// Grants all again; answers whether one was refused since the refusing began.
bool GrantAllocations();
/// True when one was refused since the refusing began.
bool AllocationWasRefused();
/// Allocations of this thread so far.
int AllocationCount();

/// Runs `operation` once with each of its allocations and all behind it refused, and once with all
/// granted. Answers how many allocations it makes. Checks inside the operation come after
/// GrantAllocations, since they allocate themselves.
template <typename Operation>
int RefuseEachAllocation(const Operation& operation) {
    for (int granted = 0;; ++granted) {
        RefuseAllocationsAfter(granted);
        operation();
        if (!GrantAllocations()) {
            return granted;
        }
    }
}

template <typename Operation>
int CountAllocations(const Operation& operation) {
    const int before = AllocationCount();
    operation();
    return AllocationCount() - before;
}

} // namespace support
