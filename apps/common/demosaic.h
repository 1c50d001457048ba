// demosaic.h - converts colour filter images to colour
#pragma once

#include "apps/common/picture.h"

/// Interpolates the two colours that each pixel lacks: the mean of the nearest of its eight
/// neighbours that have the colour. A pixel's own colour stays unchanged.
Picture Demosaic(const ImageReader& image);

/// The filter's colour at a pixel of a colour filter image: 'R', 'G' or 'B'.
char FilterLetter(const ImageLayout& layout, std::uint32_t x, std::uint32_t y);
