// image_histogram_test.cpp - tests of brightness histograms
#include "apps/view/image_histogram.h"

#include <gtest/gtest.h>

namespace {

/// A histogram in which each value of 0 to 255 occurs `count` times.
ChannelHistogram EvenHistogram(std::uint32_t count) {
    ChannelHistogram histogram;
    histogram.counts.fill(count);
    return histogram;
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

TEST(HistogramBars, AreEmptyForAnEmptyPicture) {
    const ChannelHistogram none;
    EXPECT_EQ(HistogramBars(none, 100).Height(0), 0);
}

TEST(HistogramBars, AreProportionalToSquareRoots) {
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

TEST(HistogramBars, ShowEveryValueThatOccurs) {
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

} // namespace
