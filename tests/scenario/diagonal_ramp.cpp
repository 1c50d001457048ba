// diagonal_ramp.cpp - the picture that cameras without a scene send
#include "tests/scenario/diagonal_ramp.h"

#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace scenario {

std::size_t DiagonalRamp::CountWrongPixels(const std::string& image) const {
    if (image.size() != width * height) {
        return width * height;
    }
    const unsigned first = static_cast<unsigned char>(image[0]);
    std::size_t wrong = 0;
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            const unsigned pixel = static_cast<unsigned char>(image[y * width + x]);
            wrong += pixel == (first + x + y) % levels ? 0 : 1;
        }
    }
    return wrong;
}

void DiagonalRamp::ExpectGrabbed(const std::string& directory, const nlohmann::json& report) const {
    const nlohmann::json& account = report["account"];
    const auto written = account["written"].get<unsigned>();
    // A frame that was overwritten while being copied is not written.
    const auto damaged = account["damaged"].get<unsigned>();
    EXPECT_EQ(written + damaged, report["frames"]) << report;
    EXPECT_TRUE(account["closed"]) << report;
    unsigned missed = 0;
    unsigned before = 0;
    for (unsigned number = 1; number <= written; ++number) {
        char name[32];
        std::snprintf(name, sizeof name, "frame-%06u.raw", number);
        std::string image;
        ASSERT_TRUE(platform::ReadWholeFile(platform::JoinPath(directory, name), image)) << name;
        ASSERT_EQ(CountWrongPixels(image), 0u) << name;
        const unsigned first = static_cast<unsigned char>(image[0]);
        const unsigned steps = (first + levels - before) % levels;
        ASSERT_TRUE(number == 1 || steps > 0) << name << " is the frame before it again";
        missed += number == 1 ? 0 : steps - 1;
        before = first;
    }
    EXPECT_LE(missed, report["errors"].get<unsigned>() + account["lost"].get<unsigned>() + damaged)
        << report;
}

} // namespace scenario
