// sleep_test.cpp - the real sleep and its replacement
#include "platform/sleep.h"

#include "platform/clock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace platform {
namespace {

std::atomic<std::uint64_t> sleptMs{0};

void CountInstead(std::uint32_t milliseconds) {
    sleptMs += milliseconds;
}

TEST(Sleep, SuspendsTheThreadForTheGivenTime) {
    const std::uint64_t start = MonotonicNanoseconds();
    SleepMs(50);
    // Windows counts timer ticks of up to 16 ms, and the first one is already under way.
    EXPECT_GE(MonotonicNanoseconds() - start, 30'000'000u);
}

TEST(Sleep, CallsTheReplacementUntilTheRealOneIsRestored) {
    sleptMs = 0;
    SetSleepFunction(&CountInstead);
    const std::uint64_t start = MonotonicNanoseconds();
    SleepMs(3'600'000);
    SleepMs(7);
    EXPECT_LT(MonotonicNanoseconds() - start, 3'600'000'000'000u);
    EXPECT_EQ(sleptMs, 3'600'007u);
    SetSleepFunction(nullptr);
    SleepMs(1);
    EXPECT_EQ(sleptMs, 3'600'007u);
}

TEST(Sleep, CanBeReplacedWhileOtherThreadsSleep) {
    std::atomic<bool> stop{false};
    std::thread sleeper([&] {
        while (!stop) {
            SleepMs(0);
        }
    });
    for (int i = 0; i < 1000; ++i) {
        SetSleepFunction(i % 2 == 0 ? &CountInstead : nullptr);
    }
    SetSleepFunction(nullptr);
    stop = true;
    sleeper.join();
    sleptMs = 0;
    SleepMs(1);
    EXPECT_EQ(sleptMs, 0u);
}

} // namespace
} // namespace platform
