// display_image.h - converts pictures for the screen
#pragma once

#include "apps/common/picture.h"

#include <cstdint>
#include <vector>

/// Pixels line by line from the top, each 0x00RRGGBB.
struct DisplayImage {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint32_t> pixels;
};

/// Converts to 8 bits per colour; grey is copied to all three colours, alpha is dropped.
DisplayImage MakeDisplayImage(const Picture& picture);
