// demosaic_test.cpp - tests of the conversion of colour filter images
#include "apps/common/demosaic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace {

using Pixel = std::array<std::uint16_t, 3>;

struct Filter {
    const char* name;
    std::uint32_t cfaX;
    std::uint32_t cfaY;
    const char* pattern; // two lines of two pixels
};

constexpr Filter kFilters[] = {{"BayerGR", 0, 0, "GRBG"},
                               {"BayerRG", 1, 0, "RGGB"},
                               {"BayerGB", 1, 1, "GBRG"},
                               {"BayerBG", 0, 1, "BGGR"}};

Pixel PixelAt(const Picture& picture, std::uint32_t x, std::uint32_t y) {
    const std::size_t index = (std::size_t{y} * picture.width + x) * 3;
    return {picture.samples[index], picture.samples[index + 1], picture.samples[index + 2]};
}

/// The image of a single-coloured surface, as seen through this filter.
std::vector<std::uint8_t> Surface(const Filter& filter, std::uint32_t width, std::uint32_t height,
                                  const Pixel& colour) {
    std::vector<std::uint8_t> mosaic;
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const char letter = filter.pattern[(y & 1) * 2 + (x & 1)];
            const auto index = static_cast<std::size_t>(std::string("RGB").find(letter));
            mosaic.push_back(static_cast<std::uint8_t>(colour[index]));
        }
    }
    return mosaic;
}

TEST(Demosaic, RestoresASurfaceOfOneColour) {
    const Pixel colour{200, 100, 50};
    for (const Filter& filter : kFilters) {
        const ImageLayout layout{6, 5, 1, 8, 8, MVCC_RAW_CFA, filter.cfaX, filter.cfaY};
        const std::vector<std::uint8_t> mosaic = Surface(filter, 6, 5, colour);
        const Picture picture = Demosaic(ImageReader(layout, mosaic.data()));
        EXPECT_EQ(picture.channels, 3u);
        EXPECT_EQ(picture.bits, 8u);
        for (std::uint32_t y = 0; y < layout.height; ++y) {
            for (std::uint32_t x = 0; x < layout.width; ++x) {
                EXPECT_EQ(PixelAt(picture, x, y), colour) << filter.name << " " << x << "," << y;
            }
        }
    }
}

TEST(Demosaic, TakesTheMeanOfTheNearestNeighbours) {
    // BGGR: the pixel in the centre is red, with green beside it and blue at its corners.
    const std::vector<std::uint8_t> mosaic{40, 0,   80, //
                                           0,  100, 20, //
                                           60, 40,  100};
    const ImageLayout layout{3, 3, 1, 8, 8, MVCC_RAW_CFA, 0, 1};
    const Picture picture = Demosaic(ImageReader(layout, mosaic.data()));
    EXPECT_EQ(PixelAt(picture, 1, 1), (Pixel{100, 15, 70}));
    // A corner: blue itself, green beside it, red diagonally.
    EXPECT_EQ(PixelAt(picture, 0, 0), (Pixel{100, 0, 40}));
}

TEST(Demosaic, KeepsMoreThan8Bits) {
    const std::uint16_t mosaic[] = {0xF3FF, 0x0001, 0x0002, 0x03FE};
    const ImageLayout layout{2, 2, 1, 16, 10, MVCC_RAW_CFA, 1, 0};
    const Picture picture = Demosaic(ImageReader(layout, mosaic));
    EXPECT_EQ(PixelAt(picture, 0, 0), (Pixel{0x3FF, 1, 0x3FE}));
    EXPECT_EQ(PixelAt(picture, 1, 1), (Pixel{0x3FF, 1, 0x3FE}));
}

TEST(Demosaic, LeavesColoursThatNoPixelHasBlack) {
    const std::uint8_t red = 77;
    const ImageLayout layout{1, 1, 1, 8, 8, MVCC_RAW_CFA, 1, 0};
    EXPECT_EQ(Demosaic(ImageReader(layout, &red)).samples, (std::vector<std::uint16_t>{77, 0, 0}));
}

} // namespace
