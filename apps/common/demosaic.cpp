// demosaic.cpp - converts colour filter images to colour
#include "apps/common/demosaic.h"

#include <array>

namespace {

enum Colour : unsigned { kRed, kGreen, kBlue, kColours };

/// The filter's colour at a pixel. With offsets 0, 0 the first line begins with green, red.
Colour FilterColour(const ImageLayout& layout, std::uint32_t x, std::uint32_t y) {
    constexpr Colour kPattern[2][2] = {{kGreen, kRed}, {kBlue, kGreen}};
    return kPattern[(y + layout.cfaY) & 1][(x + layout.cfaX) & 1];
}

using Sums = std::array<std::uint32_t, kColours>;

/// Sums a pixel's neighbours by colour: the diagonal ones, or those beside, above and below, which
/// are nearer.
void AddNeighbours(const ImageReader& image, std::uint32_t x, std::uint32_t y, bool diagonal,
                   Sums& sum, Sums& count) {
    const ImageLayout& layout = image.Layout();
    const std::uint32_t top = y == 0 ? 0 : y - 1;
    const std::uint32_t left = x == 0 ? 0 : x - 1;
    for (std::uint32_t row = top; row < layout.height && row <= y + 1; ++row) {
        for (std::uint32_t column = left; column < layout.width && column <= x + 1; ++column) {
            const bool isAcross = row != y && column != x;
            const Colour colour = FilterColour(layout, column, row);
            if (isAcross == diagonal && (row != y || column != x)) {
                sum[colour] += image.At(column, row);
                ++count[colour];
            }
        }
    }
}

} // namespace

Picture Demosaic(const ImageReader& image) {
    const ImageLayout& layout = image.Layout();
    Picture picture{layout.width, layout.height, kColours, layout.bits, {}};
    picture.samples.reserve(std::size_t{layout.width} * layout.height * kColours);
    for (std::uint32_t y = 0; y < layout.height; ++y) {
        for (std::uint32_t x = 0; x < layout.width; ++x) {
            Sums beside{}, besideCount{}, across{}, acrossCount{};
            AddNeighbours(image, x, y, false, beside, besideCount);
            AddNeighbours(image, x, y, true, across, acrossCount);
            const Colour own = FilterColour(layout, x, y);
            for (const Colour colour : {kRed, kGreen, kBlue}) {
                std::uint32_t value = 0;
                if (colour == own) {
                    value = image.At(x, y);
                } else if (besideCount[colour] != 0) {
                    value = beside[colour] / besideCount[colour];
                } else if (acrossCount[colour] != 0) {
                    value = across[colour] / acrossCount[colour];
                }
                picture.samples.push_back(static_cast<std::uint16_t>(value));
            }
        }
    }
    return picture;
}

char FilterLetter(const ImageLayout& layout, std::uint32_t x, std::uint32_t y) {
    return "RGB"[FilterColour(layout, x, y)];
}
