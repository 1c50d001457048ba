// clock_relation_test.cpp - tests of how a camera's clock relates to this computer's
#include "apps/recording/clock_relation.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint64_t kUnixNs = 1'790'000'000'000'000'000;

TEST(ArrivalClock, TakesTheFrameThatTookLeast) {
    ArrivalClock clock;
    EXPECT_FALSE(clock.Relation());
    const std::uint64_t ways[] = {7000, 5000, 9000, 6000, 8000};
    for (const std::uint64_t way : ways) {
        clock.Add(1000, kUnixNs + 1000 + way);
    }
    const std::optional<ClockRelation> relation = clock.Relation();
    ASSERT_TRUE(relation);
    EXPECT_EQ(relation->offsetNs, static_cast<std::int64_t>(kUnixNs + 5000));
    EXPECT_EQ(relation->uncertaintyNs, 2000u);
    EXPECT_EQ(relation->method, "arrival");
}

TEST(ArrivalClock, LooksAtTheFirstFramesOnly) {
    ArrivalClock clock;
    for (std::uint64_t i = 0; i < 100; ++i) {
        clock.Add(i, kUnixNs + i);
    }
    clock.Add(100, kUnixNs);
    EXPECT_EQ(clock.Relation()->offsetNs, static_cast<std::int64_t>(kUnixNs));
    EXPECT_EQ(clock.Relation()->uncertaintyNs, 0u);
}

TEST(ArrivalClock, KnowsTimestampsOfAnotherClock) {
    ArrivalClock clock;
    ClockRelation latched{static_cast<std::int64_t>(kUnixNs), 2000, "TimestampLatch"};
    EXPECT_TRUE(clock.Agrees(latched)) << "without frames nothing is known";
    clock.Add(5'000'000'000, kUnixNs + 5'000'100'000);
    EXPECT_TRUE(clock.Agrees(latched));
    latched.offsetNs += 1'000'000;
    EXPECT_TRUE(clock.Agrees(latched)) << "the clocks may have drifted";
    latched.offsetNs += 1'000'000;
    EXPECT_FALSE(clock.Agrees(latched)) << "before it was taken";
    latched.offsetNs = static_cast<std::int64_t>(kUnixNs) - 20'000'000'000;
    EXPECT_FALSE(clock.Agrees(latched)) << "long after it was taken";
}

} // namespace
