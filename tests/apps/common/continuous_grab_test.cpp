// continuous_grab_test.cpp - the rate of frames
#include "apps/common/continuous_grab.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint64_t kFiveMilliseconds = 5000000;

TEST(FrameTiming, CountsFramesPerSecondFromTheirIntervals) {
    FrameTiming timing;
    EXPECT_DOUBLE_EQ(timing.Rate(), 0);
    for (int i = 0; i < 39; ++i) {
        timing.interval.Add(kFiveMilliseconds);
    }
    EXPECT_DOUBLE_EQ(timing.Rate(), 200);
    timing.interval.Add(205 * kFiveMilliseconds);
    EXPECT_NEAR(timing.Rate(), 40 / 1.22, 1e-9);
}

TEST(FrameTiming, HasNoRateForFramesOfOneMoment) {
    FrameTiming timing;
    timing.interval.Add(0);
    EXPECT_DOUBLE_EQ(timing.Rate(), 0);
}

} // namespace
