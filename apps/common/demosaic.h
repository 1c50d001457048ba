// demosaic.h - colour out of a colour filter image
#pragma once

#include "apps/common/picture.h"

/// Gives every pixel the two colours that its filter keeps out: the mean of the nearest pixels,
/// among the eight around it, that have them. A pixel's own colour stays as it is.
Picture Demosaic(const ImageReader& image);

/// The filter's colour at a pixel of a colour filter image: 'R', 'G' or 'B'.
char FilterLetter(const ImageLayout& layout, std::uint32_t x, std::uint32_t y);
