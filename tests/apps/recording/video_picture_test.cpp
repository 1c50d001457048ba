// video_picture_test.cpp - tests of making pictures of a video
#include "apps/recording/video_picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

std::vector<int> Bytes(const std::string& picture) {
    std::vector<int> bytes;
    for (const char byte : picture) {
        bytes.push_back(static_cast<std::uint8_t>(byte));
    }
    return bytes;
}

std::vector<int> PictureOf(const ImageLayout& layout, const void* image) {
    std::string picture = "before";
    MakeVideoPicture(layout, image, picture);
    return Bytes(picture);
}

TEST(VideoPicture, IsGreyInTheRangeOfTelevision) {
    const std::uint8_t image[] = {0, 255, 128, 1};
    EXPECT_EQ(PictureOf({2, 2, 1, 8, 8, MVCC_MONO, 0, 0}, image),
              (std::vector<int>{16, 235, 126, 17, 128, 128}));
    const std::uint16_t deep[] = {0, 4095, 2048, 16};
    EXPECT_EQ(PictureOf({2, 2, 1, 16, 12, MVCC_MONO, 0, 0}, deep),
              (std::vector<int>{16, 235, 126, 17, 128, 128}));
}

TEST(VideoPicture, GrowsToEvenSizes) {
    const std::uint8_t image[] = {0, 128, 255};
    EXPECT_EQ(EvenSize(3), 4u);
    EXPECT_EQ(EvenSize(4), 4u);
    EXPECT_EQ(PictureOf({3, 1, 1, 8, 8, MVCC_MONO, 0, 0}, image),
              (std::vector<int>{16, 126, 235, 235, 16, 126, 235, 235, 128, 128, 128, 128}));
}

TEST(VideoPicture, HasColoursByTheirStandard) {
    for (int red : {0, 77, 255}) {
        for (int green : {0, 200, 255}) {
            for (int blue : {0, 13, 255}) {
                std::vector<std::uint8_t> image;
                for (int pixel = 0; pixel < 4; ++pixel) {
                    for (const int component : {blue, green, red}) {
                        image.push_back(static_cast<std::uint8_t>(component));
                    }
                }
                const std::vector<int> picture =
                    PictureOf({2, 2, 3, 8, 8, MVCC_BGR, 0, 0}, image.data());
                ASSERT_EQ(picture.size(), 6u);
                const double luma = 0.299 * red + 0.587 * green + 0.114 * blue;
                EXPECT_NEAR(picture[0], 16 + 219 * luma / 255, 1.0);
                EXPECT_NEAR(picture[4], 128 + 224 * (blue - luma) / (2 * 0.886 * 255), 1.0);
                EXPECT_NEAR(picture[5], 128 + 224 * (red - luma) / (2 * 0.701 * 255), 1.0);
            }
        }
    }
}

TEST(VideoPicture, ShowsColourFiltersInColour) {
    // Red where the filter is red, black elsewhere.
    const std::uint8_t image[] = {0, 255, 0, 0, 0, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0};
    const std::vector<int> picture = PictureOf({4, 4, 1, 8, 8, MVCC_RAW_CFA, 0, 0}, image);
    EXPECT_GT(picture[16 + 4], 128); // more red than grey has
}

} // namespace
