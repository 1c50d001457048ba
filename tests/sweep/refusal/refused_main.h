// refused_main.h - a program of which one allocation is refused, by its environment
//
// The programs with refusals are the real ones, linked with an allocator that fails on demand and
// with a main function around theirs. What they allocate on their main thread counts, in the
// libraries that they load as well, from the beginning of their main function to its end; the
// camera SDK's memory does not.
#pragma once

namespace sweep {

/// The number of the allocation, from 1 on; 0 or absent: none, they are only counted.
inline constexpr const char* kRefusedAllocation = "SWEEP_REFUSED_ALLOCATION";
/// A file that is written when the main function has returned: a line with 1 when the allocation
/// was made that was to be refused, else 0, and one with the number of allocations.
inline constexpr const char* kRefusalReport = "SWEEP_REFUSAL_REPORT";

} // namespace sweep
