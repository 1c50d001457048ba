// clock_test.cpp - monotonic time and processor time
#include "platform/clock.h"

#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace platform {
namespace {

std::uint64_t AnHour() {
    return 3'600'000'000'000u;
}

TEST(Clock, NeverDecreases) {
    std::uint64_t last = MonotonicNanoseconds();
    for (int i = 0; i < 10'000; ++i) {
        const std::uint64_t now = MonotonicNanoseconds();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST(Clock, Advances) {
    const std::uint64_t start = MonotonicNanoseconds();
    EXPECT_TRUE(support::WaitUntil([&] { return MonotonicNanoseconds() > start; }));
}

TEST(Clock, ReadsTheReplacementUntilTheRealOneIsRestored) {
    const std::uint64_t before = MonotonicNanoseconds();
    SetClockFunction(&AnHour);
    EXPECT_EQ(MonotonicNanoseconds(), AnHour());
    EXPECT_EQ(MonotonicNanoseconds(), AnHour()) << "it stands still";
    SetClockFunction(nullptr);
    EXPECT_GE(MonotonicNanoseconds(), before);
    EXPECT_TRUE(support::WaitUntil([&] { return MonotonicNanoseconds() > before; }));
}

TEST(Clock, MayBeReplacedWhileOthersReadIt) {
    std::atomic<bool> stop{false};
    std::thread reader([&] {
        while (!stop) {
            EXPECT_GT(MonotonicNanoseconds(), 0u);
        }
    });
    for (int i = 0; i < 1000; ++i) {
        SetClockFunction(i % 2 == 0 ? &AnHour : nullptr);
    }
    SetClockFunction(nullptr);
    stop = true;
    reader.join();
}

TEST(Clock, CountsProcessorTimeUsed) {
    const double start = ProcessCpuSeconds();
    EXPECT_GE(start, 0.0);
    EXPECT_TRUE(support::WaitUntil([&] {
        const std::uint64_t busyUntil = MonotonicNanoseconds() + 1'000'000;
        while (MonotonicNanoseconds() < busyUntil) {
        }
        return ProcessCpuSeconds() > start;
    }));
}

TEST(Clock, CountsNoProcessorTimeWhileSleeping) {
    const std::uint64_t start = MonotonicNanoseconds();
    const double used = ProcessCpuSeconds();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const double elapsed = static_cast<double>(MonotonicNanoseconds() - start) * 1e-9;
    EXPECT_LT(ProcessCpuSeconds() - used, elapsed);
}

} // namespace
} // namespace platform
