#include "ui/slider_scale.h"

#include <gtest/gtest.h>

#include <limits>

using namespace pyxen;

namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

SliderScale Over(std::int64_t min, std::int64_t max) {
    SliderScale scale;
    scale.SetRange(min, max);
    return scale;
}

TEST(SliderScale, StandsForTheNumbersThemselvesBelow65536Steps) {
    const SliderScale scale = Over(0, 65535);
    EXPECT_EQ(scale.GetSliderMin(), 0);
    EXPECT_EQ(scale.GetSliderMax(), 65535);
    EXPECT_EQ(scale.GetScale(), 1.0);
    const SliderScale negative = Over(-100, 100);
    EXPECT_EQ(negative.GetSliderMin(), -100);
    EXPECT_EQ(negative.GetSliderMax(), 100);
    EXPECT_EQ(negative.GetScale(), 1.0);
}

TEST(SliderScale, StandsFor65536PartsOfAWiderRange) {
    const SliderScale first = Over(0, 65536);
    EXPECT_EQ(first.GetSliderMin(), 0);
    EXPECT_EQ(first.GetSliderMax(), 65535);
    EXPECT_EQ(first.GetScale(), 1.0);
    const SliderScale wide = Over(1000, 1000 + 6553600);
    EXPECT_EQ(wide.GetSliderMin(), 0);
    EXPECT_EQ(wide.GetSliderMax(), 65535);
    EXPECT_EQ(wide.GetScale(), 100.0);
}

TEST(SliderScale, KnowsThatTheWholeRangeIsWide) {
    const SliderScale scale = Over(kLowest, kHighest);
    EXPECT_EQ(scale.GetSliderMax(), 65535);
    EXPECT_EQ(scale.GetScale(), 281474976710656.0);
}

TEST(SliderScale, PlacesAValueAtItsShareRoundedUp) {
    SliderScale scale = Over(0, 6553600);
    scale.SetValue(0);
    EXPECT_EQ(scale.GetPosition(), 0);
    scale.SetValue(100);
    EXPECT_EQ(scale.GetPosition(), 1);
    scale.SetValue(101);
    EXPECT_EQ(scale.GetPosition(), 2);
}

TEST(SliderScale, DoesNotOffsetThePositionByTheMinimum) {
    SliderScale scale = Over(1000000, 1000000 + 6553600);
    scale.SetValue(1000000);
    EXPECT_EQ(scale.GetPosition(), 10000);
}

TEST(SliderScale, KeepsPositionsWithinThirtyTwoBits) {
    SliderScale scale = Over(kHighest - 65536, kHighest);
    scale.SetValue(kHighest);
    EXPECT_EQ(scale.GetPosition(), std::numeric_limits<std::int32_t>::max());
    scale = Over(kLowest, kLowest + 65536);
    scale.SetValue(kLowest);
    EXPECT_EQ(scale.GetPosition(), std::numeric_limits<std::int32_t>::min());
}

TEST(SliderScale, CutsANarrowRangeBeyondThirtyTwoBitsLikeItsValues) {
    constexpr std::int64_t kStart = (std::int64_t{1} << 32) + 10;
    SliderScale scale = Over(kStart, kStart + 100);
    EXPECT_EQ(scale.GetSliderMin(), 10);
    EXPECT_EQ(scale.GetSliderMax(), 110);
    scale.SetValue(kStart + 7);
    EXPECT_EQ(scale.GetPosition(), 17);
}

TEST(SliderScale, TakesTheEndsOfTheRangeAtTheEndsOfTheSlider) {
    SliderScale scale = Over(7, 6553700);
    scale.SetPosition(65535);
    EXPECT_EQ(scale.GetValue(), 6553700);
    scale.SetPosition(0);
    EXPECT_EQ(scale.GetValue(), 7);
}

TEST(SliderScale, TakesTheScaledPositionInBetween) {
    SliderScale scale = Over(0, 65536 * 3 / 2);
    scale.SetPosition(3);
    EXPECT_EQ(scale.GetValue(), 5); // 4.5 rounded up
    scale = Over(-100, 100);
    scale.SetPosition(-30);
    EXPECT_EQ(scale.GetValue(), -30);
}

TEST(SliderScale, StopsAtTheLargestNumber) {
    SliderScale scale = Over(kLowest, kHighest);
    scale.SetPosition(65534);
    EXPECT_EQ(scale.GetValue(), kHighest);
}

TEST(SliderScale, KeepsATypedValueOutsideTheRangeUntilItIsClamped) {
    SliderScale scale = Over(0, 100);
    scale.SetValue(5000);
    EXPECT_EQ(scale.GetValue(), 5000);
    EXPECT_EQ(scale.GetPosition(), 100);
    scale.SetClampedValue(scale.GetValue());
    EXPECT_EQ(scale.GetValue(), 100);
    scale.SetClampedValue(-1);
    EXPECT_EQ(scale.GetValue(), 0);
}

TEST(SliderScale, BearsARangeTheWrongWayRound) {
    const SliderScale scale = Over(10, -10);
    EXPECT_EQ(scale.GetSliderMin(), 10);
    EXPECT_EQ(scale.GetSliderMax(), -10);
    EXPECT_EQ(scale.GetScale(), 1.0);
}

} // namespace
