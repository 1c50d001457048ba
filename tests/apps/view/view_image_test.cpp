#include "apps/view/display_image.h"
#include "apps/view/image_histogram.h"
#include "apps/view/view_text.h"

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

TEST(ImageHistogram, CountsEveryColourOnItsOwn) {
    const auto channels = MakeImageHistogram({2, 1, 3, 10, {0, 400, 1023, 4, 400, 1020}});
    ASSERT_EQ(channels.size(), 3u);
    EXPECT_EQ(channels[0].counts[0], 1u);
    EXPECT_EQ(channels[0].counts[1], 1u);
    EXPECT_EQ(channels[1].counts[100], 2u);
    EXPECT_EQ(channels[2].counts[255], 2u);
    EXPECT_EQ(channels[0].min, 0u);
    EXPECT_EQ(channels[0].max, 4u);
    EXPECT_DOUBLE_EQ(channels[0].mean, 2);
    EXPECT_DOUBLE_EQ(channels[2].mean, 1021.5);
}

TEST(ImageHistogram, LeavesAlphaOut) {
    EXPECT_EQ(MakeImageHistogram({1, 1, 4, 8, {1, 2, 3, 4}}).size(), 3u);
}

TEST(ImageHistogram, IsEmptyForAnEmptyPicture) {
    const auto channels = MakeImageHistogram({0, 0, 1, 8, {}});
    ASSERT_EQ(channels.size(), 1u);
    EXPECT_EQ(channels[0].max, 0u);
    EXPECT_EQ(channels[0].counts[0], 0u);
}

/// Every value of 0 to 255 that often.
ChannelHistogram EvenHistogram(std::uint32_t count) {
    ChannelHistogram histogram;
    histogram.counts.fill(count);
    return histogram;
}

TEST(HistogramBars, AreEmptyForAnEmptyPicture) {
    const ChannelHistogram none;
    EXPECT_EQ(HistogramBars(none, 100).Height(0), 0);
}

TEST(HistogramBars, GoBySquareRoots) {
    ChannelHistogram histogram;
    histogram.counts[7] = 10000;
    histogram.counts[8] = 2500;
    histogram.counts[9] = 100;
    const HistogramBars bars(histogram, 100);
    EXPECT_EQ(bars.Height(7), 100);
    EXPECT_EQ(bars.Height(8), 50);
    EXPECT_EQ(bars.Height(9), 10);
    EXPECT_EQ(bars.Height(10), 0);
}

TEST(HistogramBars, ShowWhatIsThereAtAll) {
    ChannelHistogram histogram;
    histogram.counts[0] = 4000000000u;
    histogram.counts[255] = 1;
    EXPECT_EQ(HistogramBars(histogram, 100).Height(255), 1);
    EXPECT_EQ(HistogramBars(histogram, 0).Height(255), 0) << "no higher than the plot";
}

TEST(HistogramBars, LeaveTheRestVisibleBesideFewSpikes) {
    ChannelHistogram histogram = EvenHistogram(16);
    histogram.counts[40] = 64;
    for (const std::size_t spike : {0u, 50u, 100u, 150u, 255u}) {
        histogram.counts[spike] = 1000000;
    }
    const HistogramBars bars(histogram, 160);
    EXPECT_EQ(bars.Height(0), 160);
    EXPECT_EQ(bars.Height(255), 160);
    EXPECT_EQ(bars.Height(40), 160) << "the highest of those that are no spikes";
    EXPECT_EQ(bars.Height(41), 80);
}

TEST(HistogramBars, KeepTheHeightsOfFewValues) {
    ChannelHistogram histogram;
    for (std::size_t bin = 0; bin < 49; ++bin) {
        histogram.counts[bin] = 100;
    }
    histogram.counts[0] = 10000;
    EXPECT_EQ(HistogramBars(histogram, 100).Height(1), 10)
        << "where so few values occur none is cut off";
}

TEST(PixelText, TellsTheTrueValueOfGrey) {
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
