// sleep.h - a sleep that tests can replace
#pragma once

#include <cstdint>

namespace platform {

using SleepFunction = void (*)(std::uint32_t milliseconds);

/// Suspends the calling thread for `milliseconds`, or calls the replacement set by a test. On
/// Windows the time is counted in timer ticks and may be up to 16 ms shorter. Any thread.
void SleepMs(std::uint32_t milliseconds);

/// Replaces the function that SleepMs calls; null restores the real one. Takes effect with the next
/// call of SleepMs. Any thread.
void SetSleepFunction(SleepFunction replacement);

} // namespace platform
