// histogram_test.cpp - tests of the distribution of values
#include "apps/common/histogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

TEST(Histogram, IsZeroWithoutValues) {
    const Histogram histogram;
    EXPECT_EQ(histogram.Count(), 0u);
    EXPECT_EQ(histogram.Min(), 0u);
    EXPECT_EQ(histogram.Max(), 0u);
    EXPECT_EQ(histogram.Percentile(50), 0u);
}

TEST(Histogram, CountsTheValuesUpToOne) {
    Histogram histogram;
    EXPECT_EQ(histogram.CountUpTo(std::numeric_limits<std::uint64_t>::max()), 0u);
    for (const std::uint64_t value : {0, 1, 5, 5, 100, 1000000}) {
        histogram.Add(value);
    }
    EXPECT_EQ(histogram.CountUpTo(0), 1u);
    EXPECT_EQ(histogram.CountUpTo(4), 2u);
    EXPECT_EQ(histogram.CountUpTo(5), 4u);
    EXPECT_EQ(histogram.CountUpTo(100), 5u);
    EXPECT_EQ(histogram.CountUpTo(900000), 5u);
    EXPECT_EQ(histogram.CountUpTo(std::numeric_limits<std::uint64_t>::max()), 6u);
}

TEST(Histogram, IsExactForSmallValues) {
    Histogram histogram;
    for (std::uint64_t value = 1; value <= 10; ++value) {
        histogram.Add(value);
    }
    EXPECT_EQ(histogram.Count(), 10u);
    EXPECT_EQ(histogram.Sum(), 55u);
    EXPECT_EQ(histogram.Percentile(0), 1u);
    EXPECT_EQ(histogram.Percentile(10), 1u);
    EXPECT_EQ(histogram.Percentile(50), 5u);
    EXPECT_EQ(histogram.Percentile(90), 9u);
    EXPECT_EQ(histogram.Percentile(91), 10u);
    EXPECT_EQ(histogram.Percentile(100), 10u);
}

TEST(Histogram, OneValueIsEveryPercentile) {
    Histogram histogram;
    histogram.Add(123456789);
    EXPECT_EQ(histogram.Min(), 123456789u);
    EXPECT_EQ(histogram.Max(), 123456789u);
    for (const double percent : {0.0, 1.0, 50.0, 99.0, 100.0}) {
        EXPECT_EQ(histogram.Percentile(percent), 123456789u);
    }
}

TEST(Histogram, HoldsTheLargestValue) {
    Histogram histogram;
    histogram.Add(std::numeric_limits<std::uint64_t>::max());
    histogram.Add(0);
    EXPECT_EQ(histogram.Percentile(100), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(histogram.Percentile(50), 0u);
}

TEST(Histogram, IsWithinOnePercentOfTheSortedValues) {
    std::mt19937_64 random(20240607);
    std::lognormal_distribution<double> times(13.0, 2.0);
    Histogram histogram;
    std::vector<std::uint64_t> values;
    for (int i = 0; i < 20000; ++i) {
        values.push_back(static_cast<std::uint64_t>(times(random)));
        histogram.Add(values.back());
    }
    std::sort(values.begin(), values.end());
    for (const double percent : {1.0, 10.0, 50.0, 90.0, 99.0, 99.9}) {
        const auto rank = static_cast<std::size_t>(std::ceil(percent / 100 * 20000.0));
        const double exact = static_cast<double>(values[rank - 1]);
        const double reported = static_cast<double>(histogram.Percentile(percent));
        EXPECT_GE(reported, exact) << percent;
        EXPECT_LE(reported, exact * 1.01) << percent;
    }
}

} // namespace
