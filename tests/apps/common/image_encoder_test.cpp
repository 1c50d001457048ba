// image_encoder_test.cpp - tests of the forms in which files hold images
#include "apps/common/image_encoder.h"

#include "apps/common/command_failure.h"

#include <gtest/gtest.h>
#include <lodepng.h>

namespace {

using FileBytes = std::vector<std::uint8_t>;

FileBytes FileOf(const EncodedFrame& frame) {
    FileBytes bytes = frame.head;
    bytes.insert(bytes.end(), frame.pixels, frame.pixels + frame.pixelBytes);
    bytes.insert(bytes.end(), frame.tail.begin(), frame.tail.end());
    return bytes;
}

FileBytes EncodedPng(const ImageLayout& layout, const FileBytes& image, std::uint32_t level) {
    EncodedFrame frame;
    EncodePng(layout, image.data(), level, frame);
    return FileOf(frame);
}

/// Without any conversion.
FileBytes DecodedPng(const FileBytes& file, lodepng::State& state) {
    state.decoder.color_convert = 0;
    FileBytes samples;
    unsigned width = 0;
    unsigned height = 0;
    EXPECT_EQ(lodepng::decode(samples, width, height, state, file), 0u);
    return samples;
}

ImageLayout GreyLayout(std::uint32_t bits) {
    return {64, 32, 1, bits > 8 ? 16u : 8u, bits, MVCC_MONO, 0, 0};
}

FileBytes Texture(const ImageLayout& layout) {
    FileBytes image(static_cast<std::size_t>(layout.Size()));
    std::uint32_t value = 1;
    for (std::uint8_t& byte : image) {
        value = value * 1664525 + 1013904223;
        byte = static_cast<std::uint8_t>((value >> 24) & 0x0F);
    }
    return image;
}

TEST(ImageEncoder, KeepsDepthAndChannelsOfBlackPictures) {
    for (const std::uint32_t bits : {8u, 10u, 16u}) {
        for (const std::uint32_t components : {1u, 3u, 4u}) {
            ImageLayout layout = GreyLayout(bits);
            layout.components = components;
            layout.colorCoding = components == 1   ? MVCC_MONO
                                 : components == 3 ? MVCC_RGB
                                                   : MVCC_RGBA;
            const FileBytes black(static_cast<std::size_t>(layout.Size()));
            lodepng::State state;
            const FileBytes samples = DecodedPng(EncodedPng(layout, black, 1), state);
            EXPECT_EQ(state.info_raw.bitdepth, bits > 8 ? 16u : 8u) << bits;
            EXPECT_EQ(state.info_raw.colortype, components == 1   ? LCT_GREY
                                                : components == 3 ? LCT_RGB
                                                                  : LCT_RGBA);
            EXPECT_EQ(samples, black);
        }
    }
}

TEST(ImageEncoder, HoldsTheSameAtEveryLevelOfCompression) {
    const ImageLayout layout = GreyLayout(8);
    const FileBytes image = Texture(layout);
    std::vector<std::size_t> sizes;
    for (std::uint32_t level = 0; level <= 9; ++level) {
        const FileBytes file = EncodedPng(layout, image, level);
        lodepng::State state;
        EXPECT_EQ(DecodedPng(file, state), image) << level;
        sizes.push_back(file.size());
    }
    EXPECT_GT(sizes[0], image.size()) << "level 0 does not compress";
    EXPECT_LT(sizes[1], image.size());
    EXPECT_LE(sizes[9], sizes[1]);
}

TEST(ImageEncoder, DoesNotCopyWhatCanBeWrittenAsItStands) {
    const ImageLayout grey = GreyLayout(8);
    const FileBytes image = Texture(grey);
    EncodedFrame frame;
    EncodePnm(grey, image.data(), false, frame);
    EXPECT_EQ(frame.pixels, image.data());
    EXPECT_EQ(frame.pixelBytes, image.size());
    const FileBytes deep(static_cast<std::size_t>(GreyLayout(12).Size()));
    EncodeRaw(GreyLayout(12), deep.data(), frame);
    EXPECT_EQ(frame.pixels, deep.data());
    EXPECT_EQ(FileOf(frame).size(), deep.size()) << "nothing is left of the frame before";
}

TEST(ImageEncoder, ForgetsTheFrameBefore) {
    const ImageLayout layout = GreyLayout(12);
    FileBytes image(static_cast<std::size_t>(layout.Size()));
    EncodedFrame fresh;
    EncodePng(layout, image.data(), 1, fresh);
    EncodedFrame used;
    EncodePnm(layout, image.data(), false, used);
    EncodePng(layout, image.data(), 1, used);
    EXPECT_EQ(FileOf(used), FileOf(fresh));
}

TEST(ImageEncoder, RefusesWhatAFileCannotHold) {
    EncodedFrame frame;
    const FileBytes image(1024);
    const auto expectRefusal = [&](const ImageLayout& layout) {
        EXPECT_THROW(EncodePng(layout, image.data(), 1, frame), CommandFailure);
        EXPECT_THROW(EncodePnm(layout, image.data(), layout.components > 1, frame), CommandFailure);
    };
    expectRefusal({0, 1, 1, 8, 8, MVCC_MONO, 0, 0});
    expectRefusal({1, 0, 1, 8, 8, MVCC_MONO, 0, 0});
    expectRefusal({1, 1, 2, 8, 8, MVCC_MONO, 0, 0});
    expectRefusal({1, 1, 1, 8, 0, MVCC_MONO, 0, 0});
    expectRefusal({1, 1, 1, 8, 9, MVCC_MONO, 0, 0});
    expectRefusal({1, 1, 1, 32, 8, MVCC_MONO, 0, 0});
    EXPECT_THROW(EncodePnm({1, 1, 3, 8, 8, MVCC_RGB, 0, 0}, image.data(), false, frame),
                 CommandFailure);
}

} // namespace
