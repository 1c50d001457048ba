// picture.h - a picture ready to be written: grey or red, green, blue (and alpha)
#pragma once

#include "apps/common/host_image.h"

#include <cstdint>
#include <vector>

/// Samples line by line, `channels` to a pixel, each of `bits` significant bits.
struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t channels = 0; ///< 1 grey, 3 RGB, 4 RGBA
    std::uint32_t bits = 0;
    std::vector<std::uint16_t> samples;
};

/// The image with its components in the order red, green, blue, alpha. A colour filter image
/// becomes the grey mosaic that it is, or with `demosaic` a colour picture.
Picture MakePicture(const ImageLayout& layout, const void* data, bool demosaic);
