// host_image_test.cpp - tests of the layout of images
#include "apps/common/host_image.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

TEST(ColorCodingName, IsAnotherForEveryCoding) {
    std::set<std::string> names;
    for (const MV_COLORCODING coding :
         {MVCC_MONO, MVCC_RAW_CFA, MVCC_RGB, MVCC_ARGB, MVCC_RGBA, MVCC_BGR, MVCC_BGRA}) {
        names.insert(ColorCodingName(coding));
    }
    EXPECT_EQ(names,
              (std::set<std::string>{"Mono", "Bayer", "RGB", "ARGB", "RGBA", "BGR", "BGRA"}));
}

TEST(ColorCodingName, IsUnknownForWhatNoCodingHas) {
    EXPECT_STREQ(ColorCodingName(static_cast<MV_COLORCODING>(99)), "unknown");
}

} // namespace
