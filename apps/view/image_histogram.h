// image_histogram.h - how the brightness of a picture is distributed
#pragma once

#include "apps/common/picture.h"

#include <array>
#include <cstdint>
#include <vector>

/// One colour of a picture.
struct ChannelHistogram {
    static constexpr std::size_t kBins = 256;

    std::array<std::uint32_t, kBins> counts{}; ///< by the value on a scale of 0 to 255
    std::uint32_t min = 0;                     ///< true values, as are max and mean
    std::uint32_t max = 0;
    double mean = 0;
};

/// How high the bars of a plot are, for people to look at.
///
/// Heights go by the square roots of the counts, and the few values that tower above the others are
/// cut off at the top: a spike, such as the black around a bright object, leaves the rest visible.
class HistogramBars {
public:
    /// `plotHeight` in pixels, 0 or more.
    HistogramBars(const ChannelHistogram& histogram, int plotHeight);
    /// The bar of one of the bins, in pixels: 0 for a count of 0, else at least 1, at most the
    /// height of the plot.
    int Height(std::size_t bin) const;

private:
    const ChannelHistogram& shown;
    const int height;
    std::uint32_t top = 1; // the count that reaches the top of the plot
};

/// One entry for grey, or red, green and blue; alpha is left out. All empty for an empty picture.
std::vector<ChannelHistogram> MakeImageHistogram(const Picture& picture);
