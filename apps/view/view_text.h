// view_text.h - texts of the viewer's status line
#pragma once

#include "apps/common/host_image.h"

#include <cstdint>
#include <string>

/// "(12, 34)  200", "(12, 34)  R 1  G 2  B 3", or for a colour filter image the pixel's own colour
/// "(12, 34)  G 200". Values of the image, not those scaled for the screen. Empty outside the
/// image.
std::string PixelText(const ImageLayout& layout, const void* data, std::uint32_t x,
                      std::uint32_t y);
/// "640 x 480  Bayer  8 bit"; empty for an empty image.
std::string FormatText(const ImageLayout& layout);
/// "Fit (85 %)" or "100 %".
std::string ZoomText(double factor, bool isFit);
/// "25.0 frames/s".
std::string RateText(double rate);
/// "1 error", "2 errors", "no errors".
std::string ErrorCountText(std::uint64_t errors);
/// "1 frame", "2 frames".
std::string FrameCountText(std::uint64_t frames);
