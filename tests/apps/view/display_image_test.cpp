// display_image_test.cpp - tests of converting pictures for the screen
#include "apps/view/display_image.h"

#include <gtest/gtest.h>

namespace {

TEST(ScaleTo8Bits, TakesTheHighestEightBits) {
    EXPECT_EQ(ScaleTo8Bits(200, 8), 200);
    EXPECT_EQ(ScaleTo8Bits(1023, 10), 255);
    EXPECT_EQ(ScaleTo8Bits(0x7FF, 12), 127);
    EXPECT_EQ(ScaleTo8Bits(0xFFFF, 16), 255);
    EXPECT_EQ(ScaleTo8Bits(0, 16), 0);
}

TEST(ScaleTo8Bits, SpreadsASmallRange) {
    EXPECT_EQ(ScaleTo8Bits(1, 1), 255);
    EXPECT_EQ(ScaleTo8Bits(3, 4), 51);
    EXPECT_EQ(ScaleTo8Bits(15, 4), 255);
    EXPECT_EQ(ScaleTo8Bits(0, 6), 0);
}

TEST(DisplayImage, ShowsGreyInAllColours) {
    const DisplayImage image = MakeDisplayImage({2, 1, 1, 12, {0x123, 0xFFF}});
    EXPECT_EQ(image.width, 2u);
    EXPECT_EQ(image.height, 1u);
    EXPECT_EQ(image.pixels, (std::vector<std::uint32_t>{0x121212, 0xFFFFFF}));
}

TEST(DisplayImage, PutsRedHighestAndLeavesAlphaOut) {
    EXPECT_EQ(MakeDisplayImage({1, 1, 3, 8, {1, 2, 3}}).pixels,
              std::vector<std::uint32_t>{0x010203});
    EXPECT_EQ(MakeDisplayImage({1, 1, 4, 8, {1, 2, 3, 99}}).pixels,
              std::vector<std::uint32_t>{0x010203});
}

} // namespace
