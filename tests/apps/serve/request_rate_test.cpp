// request_rate_test.cpp - how many requests are taken
#include "apps/serve/request_rate.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint64_t kRateSecond = 1000000000;

int TakenAt(RequestRate& rate, std::uint64_t now) {
    int taken = 0;
    while (rate.TakeAt(now)) {
        ++taken;
    }
    return taken;
}

TEST(RequestRate, TakesABurstAndThenSoManyASecond) {
    RequestRate rate(10);
    const std::uint64_t begin = 100 * kRateSecond;
    EXPECT_NEAR(TakenAt(rate, begin), 20, 1);
    EXPECT_EQ(TakenAt(rate, begin), 0);
    EXPECT_NEAR(TakenAt(rate, begin + kRateSecond), 10, 1);
    EXPECT_NEAR(TakenAt(rate, begin + 60 * kRateSecond), 20, 1) << "no more is saved";
}

TEST(RequestRate, TakesSomethingAtLeast) {
    RequestRate rate(0);
    EXPECT_TRUE(rate.Take());
}

} // namespace
