// gfx_mode_test.cpp - the values of an empty graphics mode
#include "mivora/gfx_mode.h"

#include <gtest/gtest.h>

namespace {

TEST(GfxMode, ReturnsZeroByDefault) {
    CMivoraGfxMode mode;
    EXPECT_EQ(mode.GetxRes(), 0u);
    EXPECT_EQ(mode.GetyRes(), 0u);
    EXPECT_EQ(mode.GetNumComponents(), 0u);
    EXPECT_EQ(mode.GetAllocatedBitPerComponent(), 0u);
    EXPECT_EQ(mode.GetBitStartComponent(), 0u);
    EXPECT_EQ(mode.GetBitPerComponent(), 0u);
    EXPECT_EQ(mode.GetColorCoding(), MVCC_MONO);
    EXPECT_EQ(mode.GetCFAxOffset(), 0u);
    EXPECT_EQ(mode.GetCFAyOffset(), 0u);
    EXPECT_EQ(mode.GetNumPixels(), 0u);
    EXPECT_EQ(mode.GetImageSize(), 0u);
    EXPECT_EQ(mode.GetInterlace(), MV_PROGRESSIVE);
    EXPECT_EQ(mode.GetNext(), nullptr);
}

} // namespace
