// shown_image.h - frames as a page shows them
#pragma once

#include "apps/serve/frame_holder.h"

#include <cstdint>
#include <vector>

/// Pixels of 8 bits per channel, line by line, grey or red, green, blue.
struct ShownImage {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t channels = 0;
    const std::uint8_t* pixels = nullptr; ///< in `own`, or in the frame where it is shown as it is
    std::vector<std::uint8_t> own;
};

/// The whole frame, at most so wide: reduced by a whole number, of which each pixel is the mean of
/// four. A reduced colour filter image takes each pixel from one cell of the filter. The frame has
/// to stay.
ShownImage ShowReduced(const ServedFrame& frame, std::uint32_t mostWidth);

/// Part of a frame, pixel by pixel; the part lies within the frame. Colour filter images are in
/// colour.
ShownImage ShowPart(const ServedFrame& frame, std::uint32_t x, std::uint32_t y, std::uint32_t width,
                    std::uint32_t height);
