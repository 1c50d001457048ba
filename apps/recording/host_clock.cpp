// host_clock.cpp - from this computer's monotonic clock to the time of day
#include "apps/recording/host_clock.h"

#include "platform/clock.h"

#include <chrono>
#include <limits>

namespace {

// One of them is not interrupted between the readings.
constexpr int kReadings = 8;

std::uint64_t UnixNanoseconds() {
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(
                                          std::chrono::system_clock::now().time_since_epoch())
                                          .count());
}

} // namespace

std::uint64_t UnixMinusHostNanoseconds() {
    std::uint64_t least = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t difference = 0;
    for (int i = 0; i < kReadings; ++i) {
        const std::uint64_t before = platform::MonotonicNanoseconds();
        const std::uint64_t now = UnixNanoseconds();
        const std::uint64_t took = platform::MonotonicNanoseconds() - before;
        if (took < least) {
            least = took;
            difference = now - before - took / 2;
        }
    }
    return difference;
}
