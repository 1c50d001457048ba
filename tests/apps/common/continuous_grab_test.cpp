// continuous_grab_test.cpp - the rate of frames
#include "apps/common/continuous_grab.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint64_t kFiveMilliseconds = 5000000;

TEST(FrameTiming, CountsTheFramesPerSecondThatWereTaken) {
    FrameTiming timing;
    EXPECT_DOUBLE_EQ(timing.Rate(), 0);
    timing.takenIntervals = 39;
    timing.takenNanoseconds = 39 * kFiveMilliseconds;
    timing.interval.Add(1); // also of frames that were not taken
    EXPECT_DOUBLE_EQ(timing.Rate(), 200);
    timing.takenIntervals += 1;
    timing.takenNanoseconds += 205 * kFiveMilliseconds;
    EXPECT_NEAR(timing.Rate(), 40 / 1.22, 1e-9);
}

TEST(FrameTiming, HasNoRateForFramesOfOneMoment) {
    FrameTiming timing;
    timing.takenIntervals = 1;
    EXPECT_DOUBLE_EQ(timing.Rate(), 0);
}

} // namespace
