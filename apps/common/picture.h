// picture.h - a picture in grey, RGB or RGBA
#pragma once

#include "apps/common/host_image.h"

#include <array>
#include <cstdint>
#include <vector>

/// Samples line by line, `channels` per pixel, each with `bits` significant bits.
struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t channels = 0; ///< 1 grey, 3 RGB, 4 RGBA
    std::uint32_t bits = 0;
    std::vector<std::uint16_t> samples;
};

/// Converts an image; components are reordered to red, green, blue, alpha. A colour filter image
/// becomes its grey mosaic, or with `demosaic` a colour picture.
Picture MakePicture(const ImageLayout& layout, const void* data, bool demosaic);

/// The indices of a pixel's red, green, blue and alpha components; the first is that of grey.
std::array<std::uint32_t, 4> ChannelOrder(MV_COLORCODING coding);

/// Scales a sample of `bits` significant bits (1 to 16) to 0 to 255: its highest eight bits, or a
/// smaller range stretched so that its maximum becomes 255.
std::uint8_t ScaleTo8Bits(std::uint32_t sample, std::uint32_t bits);
