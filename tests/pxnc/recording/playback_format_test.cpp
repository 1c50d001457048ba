// playback_format_test.cpp - tests of the pixel formats in which recorded images are sent
#include "pxnc/recording/playback_format.h"

#include "imaging/pixel_format.h"

#include <gtest/gtest.h>

namespace {

TEST(PlaybackFormat, TheModuleTakesAsItStands) {
    for (const pyxen::PixelFormat& camera : pyxen::PixelFormatTable()) {
        const ImageLayout layout{4,
                                 3,
                                 camera.components,
                                 camera.allocatedBits,
                                 camera.bits,
                                 static_cast<MV_COLORCODING>(camera.colorCoding),
                                 camera.cfaX,
                                 camera.cfaY};
        const playback::PixelFormat* const sent = playback::FindPixelFormat(layout);
        ASSERT_TRUE(sent) << camera.name;
        const pyxen::PixelFormat* const taken = sent->code != 0
                                                    ? pyxen::FindPixelFormatByCode(sent->code)
                                                    : pyxen::FindPixelFormatByName(sent->name);
        ASSERT_TRUE(taken) << camera.name;
        EXPECT_EQ(taken->convert, nullptr) << camera.name;
        EXPECT_EQ(taken->components, layout.components) << camera.name;
        EXPECT_EQ(taken->allocatedBits, layout.allocatedBits) << camera.name;
        EXPECT_EQ(taken->bits, layout.bits) << camera.name;
        EXPECT_EQ(static_cast<MV_COLORCODING>(taken->colorCoding), layout.colorCoding)
            << camera.name;
        EXPECT_EQ(taken->cfaX, layout.cfaX) << camera.name;
        EXPECT_EQ(taken->cfaY, layout.cfaY) << camera.name;
    }
}

TEST(PlaybackFormat, IsThereForNoOtherLayout) {
    const ImageLayout grey{4, 3, 1, 8, 8, MVCC_MONO, 0, 0};
    ASSERT_TRUE(playback::FindPixelFormat(grey));
    for (const auto& [member, value] :
         {std::pair{&ImageLayout::components, 3u}, std::pair{&ImageLayout::allocatedBits, 16u},
          std::pair{&ImageLayout::bits, 7u}}) {
        ImageLayout other = grey;
        other.*member = value;
        EXPECT_EQ(playback::FindPixelFormat(other), nullptr);
    }
    ImageLayout other{4, 3, 1, 16, 14, MVCC_RAW_CFA, 0, 0};
    EXPECT_EQ(playback::FindPixelFormat(other), nullptr);
    other = {4, 3, 1, 8, 8, MVCC_RAW_CFA, 2, 0};
    EXPECT_EQ(playback::FindPixelFormat(other), nullptr);
    other = {4, 3, 4, 8, 8, static_cast<MV_COLORCODING>(99), 0, 0};
    EXPECT_EQ(playback::FindPixelFormat(other), nullptr);
}

} // namespace
