// sleep.h - the one way to let time pass
#pragma once

#include <cstdint>

namespace platform {

using SleepFunction = void (*)(std::uint32_t milliseconds);

/// Lets the calling thread rest for `milliseconds`, or calls the replacement that a test set.
void SleepMs(std::uint32_t milliseconds);

/// Replaces what SleepMs does; null brings the real one back. Any thread; takes effect at the
/// next call of SleepMs.
void SetSleepFunction(SleepFunction replacement);

} // namespace platform
