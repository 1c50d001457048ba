// clock.cpp - monotonic time, the same on all platforms
#include "platform/clock.h"

#include <chrono>

namespace platform {

std::uint64_t MonotonicNanoseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

} // namespace platform
