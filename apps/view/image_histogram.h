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

/// One entry for grey, or red, green and blue; alpha is left out. All empty for an empty picture.
std::vector<ChannelHistogram> MakeImageHistogram(const Picture& picture);
