// clock.cpp - monotonic time, the same on all platforms
#include "platform/clock.h"

#include <atomic>
#include <chrono>

namespace platform {

namespace {

std::atomic<ClockFunction> replacementClock{nullptr};

} // namespace

std::uint64_t MonotonicNanoseconds() {
    if (const ClockFunction replacement = replacementClock.load()) {
        return replacement();
    }
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

void SetClockFunction(ClockFunction replacement) {
    replacementClock.store(replacement);
}

} // namespace platform
