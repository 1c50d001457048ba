// image_values.h - the true values of a frame
#pragma once

#include "apps/serve/frame_holder.h"

#include <cstdint>
#include <vector>

/// The values of a pixel in the order red, green, blue, alpha, or its only one.
std::vector<std::uint32_t> PixelValues(const ServedFrame& frame, std::uint32_t x, std::uint32_t y);

struct ValueHistogram {
    std::vector<std::vector<std::uint64_t>> channels; ///< of pixels by value, in equal steps
    std::uint64_t saturated = 0;                      ///< pixels with a component at its maximum
};

/// `bins` is a power of two, at most that of the values. In channels as above; alpha is left out.
ValueHistogram CountValues(const ServedFrame& frame, std::uint32_t bins);

/// The values along a line from pixel to pixel, both included; channels as above.
std::vector<std::vector<std::uint32_t>> LineValues(const ServedFrame& frame, std::uint32_t x1,
                                                   std::uint32_t y1, std::uint32_t x2,
                                                   std::uint32_t y2);
