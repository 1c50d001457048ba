// shown_image_test.cpp - reduced frames and parts of them
#include "apps/serve/shown_image.h"

#include "apps/common/demosaic.h"
#include "apps/common/picture.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

ServedFrame FrameOf(std::uint32_t width, std::uint32_t height, std::uint32_t components,
                    std::uint32_t bits, MV_COLORCODING coding) {
    ServedFrame frame;
    frame.layout.width = width;
    frame.layout.height = height;
    frame.layout.components = components;
    frame.layout.bits = bits;
    frame.layout.allocatedBits = bits > 8 ? 16 : 8;
    frame.layout.colorCoding = coding;
    frame.bytes.resize(static_cast<std::size_t>(frame.layout.Size()));
    return frame;
}

void SetSample(ServedFrame& frame, std::size_t index, std::uint16_t value) {
    if (frame.layout.allocatedBits == 8) {
        frame.bytes.at(index) = static_cast<std::uint8_t>(value);
    } else {
        std::memcpy(frame.bytes.data() + index * sizeof value, &value, sizeof value);
    }
}

void FillRamp(ServedFrame& frame) {
    const std::size_t samples =
        std::size_t{frame.layout.width} * frame.layout.height * frame.layout.components;
    for (std::size_t i = 0; i < samples; ++i) {
        SetSample(frame, i, static_cast<std::uint16_t>(i * 37 % (1u << frame.layout.bits)));
    }
}

TEST(ShowReduced, LeavesAnImageThatIsSmallEnough) {
    ServedFrame frame = FrameOf(5, 3, 1, 8, MVCC_MONO);
    FillRamp(frame);
    const ShownImage shown = ShowReduced(frame, 5);
    EXPECT_EQ(shown.width, 5u);
    EXPECT_EQ(shown.height, 3u);
    EXPECT_EQ(shown.channels, 1u);
    EXPECT_EQ(shown.pixels, frame.bytes.data()) << "it is not copied";
}

TEST(ShowReduced, TakesTheMeanOfBlocks) {
    ServedFrame frame = FrameOf(4, 2, 1, 8, MVCC_MONO);
    frame.bytes = {10, 20, 0, 0, 30, 40, 255, 255};
    const ShownImage shown = ShowReduced(frame, 3);
    ASSERT_EQ(shown.width, 2u);
    ASSERT_EQ(shown.height, 1u);
    EXPECT_EQ(shown.pixels[0], 25);
    EXPECT_EQ(shown.pixels[1], 127);
}

TEST(ShowReduced, BringsColoursAndBitsIntoTheOrderOfThePage) {
    ServedFrame frame = FrameOf(2, 2, 3, 12, MVCC_BGR);
    for (std::size_t pixel = 0; pixel < 4; ++pixel) {
        SetSample(frame, pixel * 3, 0x100);
        SetSample(frame, pixel * 3 + 1, 0x200);
        SetSample(frame, pixel * 3 + 2, 0x300);
    }
    const ShownImage shown = ShowReduced(frame, 1);
    ASSERT_EQ(shown.channels, 3u);
    EXPECT_EQ(shown.pixels[0], 0x30);
    EXPECT_EQ(shown.pixels[1], 0x20);
    EXPECT_EQ(shown.pixels[2], 0x10);
}

TEST(ShowReduced, TakesColoursOfAFilterFromItsCells) {
    ServedFrame frame = FrameOf(16, 16, 1, 8, MVCC_RAW_CFA);
    for (std::uint32_t y = 0; y < 16; ++y) {
        for (std::uint32_t x = 0; x < 16; ++x) {
            const char letter = FilterLetter(frame.layout, x, y);
            SetSample(frame, y * 16 + x, letter == 'R' ? 200 : letter == 'B' ? 50 : 100);
        }
    }
    for (const std::uint32_t width : {8u, 5u, 1u}) {
        const ShownImage shown = ShowReduced(frame, width);
        ASSERT_LE(shown.width, width);
        EXPECT_EQ(shown.pixels[0], 200);
        EXPECT_EQ(shown.pixels[1], 100);
        EXPECT_EQ(shown.pixels[2], 50);
    }
}

TEST(ShowReduced, TakesImagesOfEveryShape) {
    for (const MV_COLORCODING coding : {MVCC_MONO, MVCC_RAW_CFA}) {
        for (const auto& [width, height] :
             {std::pair{1u, 1u}, {1u, 40u}, {40u, 1u}, {7u, 3u}, {33u, 2u}}) {
            ServedFrame frame = FrameOf(width, height, 1, 8, coding);
            for (const std::uint32_t most : {1u, 2u, 16u}) {
                const ShownImage shown = ShowReduced(frame, most);
                EXPECT_GE(shown.width, 1u);
                EXPECT_GE(shown.height, 1u);
            }
        }
    }
}

/// A part is the same as that part of the whole, as demosaicing everything gives it.
void ExpectPartsOf(const ServedFrame& frame) {
    const Picture whole = MakePicture(frame.layout, frame.bytes.data(), true);
    const std::uint32_t channels = whole.channels == 1 ? 1 : 3;
    for (const auto& [x, y, width, height] : std::vector<std::array<std::uint32_t, 4>>{
             {0, 0, 9, 7}, {0, 0, 1, 1}, {3, 2, 4, 3}, {8, 6, 1, 1}, {1, 5, 8, 2}, {4, 0, 1, 7}}) {
        const ShownImage part = ShowPart(frame, x, y, width, height);
        ASSERT_EQ(part.channels, channels);
        for (std::uint32_t row = 0; row < height; ++row) {
            for (std::uint32_t column = 0; column < width; ++column) {
                for (std::uint32_t channel = 0; channel < channels; ++channel) {
                    const std::size_t at =
                        (std::size_t{y + row} * whole.width + x + column) * whole.channels +
                        channel;
                    ASSERT_EQ(part.pixels[(std::size_t{row} * width + column) * channels + channel],
                              ScaleTo8Bits(whole.samples[at], whole.bits))
                        << x << ' ' << y << ' ' << column << ' ' << row;
                }
            }
        }
    }
}

TEST(ShowPart, IsThatPartOfTheWhole) {
    for (const auto& [components, bits, coding] :
         std::vector<std::tuple<std::uint32_t, std::uint32_t, MV_COLORCODING>>{
             {1, 8, MVCC_MONO},
             {1, 12, MVCC_MONO},
             {3, 8, MVCC_BGR},
             {4, 8, MVCC_ARGB},
             {1, 8, MVCC_RAW_CFA},
             {1, 10, MVCC_RAW_CFA}}) {
        ServedFrame frame = FrameOf(9, 7, components, bits, coding);
        FillRamp(frame);
        ExpectPartsOf(frame);
        frame.layout.cfaX = 1;
        ExpectPartsOf(frame);
        frame.layout.cfaY = 1;
        ExpectPartsOf(frame);
    }
}

} // namespace
