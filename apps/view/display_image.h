// display_image.h - a picture as a screen shows it
#pragma once

#include "apps/common/picture.h"

#include <cstdint>
#include <vector>

/// A sample of `bits` significant bits (1 to 16) on a scale of 0 to 255: the highest eight bits, or
/// a smaller range spread out so that its largest value becomes 255.
std::uint8_t ScaleTo8Bits(std::uint32_t sample, std::uint32_t bits);

/// Pixels line by line from the top, each 0x00RRGGBB.
struct DisplayImage {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint32_t> pixels;
};

/// The picture in 8 bits a colour; grey is shown in all three, alpha is left out.
DisplayImage MakeDisplayImage(const Picture& picture);
