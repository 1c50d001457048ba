// clock.h - time that only goes forward, and the processor time used
#pragma once

#include <cstdint>

namespace platform {

/// Nanoseconds since a moment that stays the same while the program runs. Never goes back, and
/// does not follow changes of the system's date. Any thread.
std::uint64_t MonotonicNanoseconds();

/// Seconds of processor time that all threads of this process have used, in user and in system
/// mode together. Any thread.
double ProcessCpuSeconds();

} // namespace platform
