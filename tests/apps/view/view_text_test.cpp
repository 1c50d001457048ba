// view_text_test.cpp - tests of the texts of the viewer's status line
#include "apps/view/view_text.h"

#include <gtest/gtest.h>

namespace {

TEST(PixelText, ShowsTheUnscaledValueOfGrey) {
    const std::uint16_t data[] = {0, 0, 0, 4095};
    const ImageLayout layout{2, 2, 1, 16, 12, MVCC_MONO, 0, 0};
    EXPECT_EQ(PixelText(layout, data, 1, 1), "(1, 1)  4095");
    EXPECT_EQ(PixelText(layout, data, 0, 1), "(0, 1)  0");
}

TEST(PixelText, NamesColoursInTheirOrder) {
    const std::uint8_t data[] = {0, 0, 0, 10, 20, 30};
    EXPECT_EQ(PixelText({2, 1, 3, 8, 8, MVCC_BGR, 0, 0}, data, 1, 0), "(1, 0)  R 30  G 20  B 10");
    EXPECT_EQ(PixelText({2, 1, 3, 8, 8, MVCC_RGB, 0, 0}, data, 1, 0), "(1, 0)  R 10  G 20  B 30");
    const std::uint8_t withAlpha[] = {40, 10, 20, 30};
    EXPECT_EQ(PixelText({1, 1, 4, 8, 8, MVCC_ARGB, 0, 0}, withAlpha, 0, 0),
              "(0, 0)  R 10  G 20  B 30  A 40");
}

TEST(PixelText, NamesTheFilterOfAPixel) {
    const std::uint8_t data[] = {1, 2, 3, 4};
    const ImageLayout greenFirst{2, 2, 1, 8, 8, MVCC_RAW_CFA, 0, 0};
    EXPECT_EQ(PixelText(greenFirst, data, 0, 0), "(0, 0)  G 1");
    EXPECT_EQ(PixelText(greenFirst, data, 1, 0), "(1, 0)  R 2");
    EXPECT_EQ(PixelText(greenFirst, data, 0, 1), "(0, 1)  B 3");
    const ImageLayout redFirst{2, 2, 1, 8, 8, MVCC_RAW_CFA, 1, 0};
    EXPECT_EQ(PixelText(redFirst, data, 0, 0), "(0, 0)  R 1");
}

TEST(PixelText, IsEmptyBesideTheImage) {
    const std::uint8_t data[] = {1};
    EXPECT_EQ(PixelText({1, 1, 1, 8, 8, MVCC_MONO, 0, 0}, data, 1, 0), "");
    EXPECT_EQ(PixelText({1, 1, 1, 8, 8, MVCC_MONO, 0, 0}, data, 0, 1), "");
}

TEST(ViewText, DescribesFormatZoomAndCounts) {
    EXPECT_EQ(FormatText({640, 480, 1, 8, 8, MVCC_RAW_CFA, 0, 0}), "640 x 480  Bayer  8 bit");
    EXPECT_EQ(FormatText({}), "");
    EXPECT_EQ(ZoomText(1, false), "100 %");
    EXPECT_EQ(ZoomText(0.853, true), "Fit (85 %)");
    EXPECT_EQ(ZoomText(1.0 / 32, false), "3.1 %");
    EXPECT_EQ(RateText(24.96), "25.0 frames/s");
    EXPECT_EQ(ErrorCountText(0), "no errors");
    EXPECT_EQ(ErrorCountText(1), "1 error");
    EXPECT_EQ(ErrorCountText(12), "12 errors");
    EXPECT_EQ(FrameCountText(1), "1 frame");
    EXPECT_EQ(FrameCountText(0), "0 frames");
}

} // namespace
