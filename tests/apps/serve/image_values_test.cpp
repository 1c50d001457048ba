// image_values_test.cpp - true values of frames
#include "apps/serve/image_values.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

ServedFrame MonoFrame() {
    ServedFrame frame;
    frame.layout.width = 4;
    frame.layout.height = 2;
    frame.layout.components = 1;
    frame.layout.allocatedBits = 16;
    frame.layout.bits = 12;
    const std::uint16_t samples[] = {0, 1, 2, 3, 4092, 4093, 4094, 4095};
    frame.bytes.resize(sizeof samples);
    std::memcpy(frame.bytes.data(), samples, sizeof samples);
    return frame;
}

ServedFrame ColourFrame() {
    ServedFrame frame;
    frame.layout.width = 2;
    frame.layout.height = 1;
    frame.layout.components = 4;
    frame.layout.allocatedBits = 8;
    frame.layout.bits = 8;
    frame.layout.colorCoding = MVCC_BGRA;
    frame.bytes = {1, 2, 255, 9, 4, 5, 6, 255};
    return frame;
}

TEST(ImageValues, AreThoseOfThePixel) {
    EXPECT_EQ(PixelValues(MonoFrame(), 2, 1), (std::vector<std::uint32_t>{4094}));
    EXPECT_EQ(PixelValues(ColourFrame(), 0, 0), (std::vector<std::uint32_t>{255, 2, 1, 9}));
}

TEST(ImageValues, AreCounted) {
    const ValueHistogram mono = CountValues(MonoFrame(), 4);
    EXPECT_EQ(mono.channels, (std::vector<std::vector<std::uint64_t>>{{4, 0, 0, 4}}));
    EXPECT_EQ(mono.saturated, 1u);
    EXPECT_EQ(CountValues(MonoFrame(), 65536).channels.at(0).size(), 4096u);
    const ValueHistogram colour = CountValues(ColourFrame(), 2);
    EXPECT_EQ(colour.channels, (std::vector<std::vector<std::uint64_t>>{{1, 1}, {2, 0}, {2, 0}}));
    EXPECT_EQ(colour.saturated, 1u) << "alpha does not count";
}

TEST(ImageValues, StandAlongALine) {
    const ServedFrame frame = MonoFrame();
    const auto line = [&](std::uint32_t x1, std::uint32_t y1, std::uint32_t x2, std::uint32_t y2) {
        return LineValues(frame, x1, y1, x2, y2).at(0);
    };
    EXPECT_EQ(line(0, 0, 3, 0), (std::vector<std::uint32_t>{0, 1, 2, 3}));
    EXPECT_EQ(line(3, 1, 1, 1), (std::vector<std::uint32_t>{4095, 4094, 4093}));
    EXPECT_EQ(line(0, 0, 3, 1), (std::vector<std::uint32_t>{0, 1, 4094, 4095}));
    EXPECT_EQ(line(2, 1, 2, 1), (std::vector<std::uint32_t>{4094}));
    EXPECT_EQ(LineValues(ColourFrame(), 0, 0, 1, 0).size(), 4u);
}

} // namespace
