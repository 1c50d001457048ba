// rate_meter_test.cpp - tests of measuring the rate of events
#include "apps/view/rate_meter.h"

#include <gtest/gtest.h>

namespace {

TEST(RateMeter, CountsIntervalsOfTheLastSecond) {
    constexpr std::uint64_t kMs = 1000000;
    RateMeter meter;
    EXPECT_DOUBLE_EQ(meter.Rate(5000 * kMs), 0);
    for (std::uint64_t i = 0; i <= 100; ++i) {
        meter.Add(5000 * kMs + i * 40 * kMs);
    }
    EXPECT_DOUBLE_EQ(meter.Rate(9000 * kMs), 25);
    EXPECT_DOUBLE_EQ(meter.Rate(9900 * kMs), 25);
    EXPECT_DOUBLE_EQ(meter.Rate(9990 * kMs), 0) << "one alone has no rate";
}

TEST(RateMeter, HasNoRateForOneMoment) {
    RateMeter meter;
    meter.Add(7);
    meter.Add(7);
    EXPECT_DOUBLE_EQ(meter.Rate(8), 0);
}

} // namespace
