// host_clock.h - from this computer's monotonic clock to the time of day
#pragma once

#include <cstdint>

/// What is added to platform::MonotonicNanoseconds to get nanoseconds since 1970 (UTC): read once
/// for all that is to be compared, since the time of day may be set while a program runs.
std::uint64_t UnixMinusHostNanoseconds();
