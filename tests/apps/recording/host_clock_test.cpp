// host_clock_test.cpp - tests of the way from the monotonic clock to the time of day
#include "apps/recording/host_clock.h"

#include "platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

TEST(HostClock, LeadsToTheTimeOfDay) {
    const auto now = [] {
        return std::chrono::duration_cast<std::chrono::nanoseconds>(
                   std::chrono::system_clock::now().time_since_epoch())
            .count();
    };
    const std::uint64_t difference = UnixMinusHostNanoseconds();
    constexpr std::int64_t kAdjustmentNs = 1000000; // of the time of day, meanwhile
    const std::int64_t before = now();
    const auto time = static_cast<std::int64_t>(platform::MonotonicNanoseconds() + difference);
    const std::int64_t after = now();
    EXPECT_GE(time, before - kAdjustmentNs);
    EXPECT_LE(time, after + kAdjustmentNs);
}

} // namespace
