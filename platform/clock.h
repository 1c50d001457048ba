// clock.h - monotonic time and processor time
#pragma once

#include <cstdint>

namespace platform {

/// Nanoseconds since an arbitrary point in time that is fixed for the life of the process. Never
/// decreases and is not affected by changes of the system time. Any thread.
std::uint64_t MonotonicNanoseconds();

using ClockFunction = std::uint64_t (*)();

/// Replaces the clock that MonotonicNanoseconds reads; null restores the real one. A replacement
/// must never decrease. Limits that are measured with MonotonicNanoseconds follow it; a sleep and
/// the wait for an event still take real time. Takes effect with the next reading. Any thread.
void SetClockFunction(ClockFunction replacement);

/// Processor time in seconds that all threads of this process have used, in user and system mode
/// together; 0.0 when the system cannot report it. Any thread.
double ProcessCpuSeconds();

} // namespace platform
