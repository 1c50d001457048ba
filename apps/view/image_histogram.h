// image_histogram.h - brightness histogram of a picture
#pragma once

#include "apps/common/picture.h"

#include <array>
#include <cstdint>
#include <vector>

/// The histogram of one colour of a picture.
struct ChannelHistogram {
    static constexpr std::size_t kBins = 256;

    std::array<std::uint32_t, kBins> counts{}; ///< by value scaled to 0 to 255
    std::uint32_t min = 0;                     ///< unscaled, as are max and mean
    std::uint32_t max = 0;
    double mean = 0;
};

/// Heights of the bars of a plot.
///
/// Heights are proportional to the square root of the count, and the few highest bars are cut off
/// at the top: a spike, such as the black around a bright object, leaves the rest visible.
class HistogramBars {
public:
    /// `plotHeight` in pixels, 0 or more.
    HistogramBars(const ChannelHistogram& histogram, int plotHeight);
    /// Height of a bin's bar in pixels: 0 for a count of 0, otherwise 1 to the height of the plot.
    int Height(std::size_t bin) const;

private:
    const ChannelHistogram& shown;
    const int height;
    std::uint32_t top = 1; // the count that reaches the top of the plot
};

/// One entry for grey, or red, green and blue; alpha is ignored. All zero for an empty picture.
std::vector<ChannelHistogram> MakeImageHistogram(const Picture& picture);
