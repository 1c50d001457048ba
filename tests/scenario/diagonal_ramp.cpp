// diagonal_ramp.cpp - the picture that cameras without a scene send
#include "tests/scenario/diagonal_ramp.h"

#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <sstream>

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
    std::string index;
    ASSERT_TRUE(platform::ReadWholeFile(platform::JoinPath(directory, "frames.jsonl"), index));
    std::istringstream lines(index);
    unsigned read = 0;
    unsigned missing = 0; // since the last one read
    unsigned before = 0;
    for (std::string text; std::getline(lines, text);) {
        const auto line = nlohmann::json::parse(text);
        if (line["file"].is_null()) {
            ++missing;
            continue;
        }
        const auto name = line["file"].get<std::string>();
        std::string image;
        ASSERT_TRUE(platform::ReadWholeFile(platform::JoinPath(directory, name), image)) << name;
        ASSERT_EQ(CountWrongPixels(image), 0u) << name;
        const unsigned first = static_cast<unsigned char>(image[0]);
        const unsigned steps = (first + levels - before) % levels;
        EXPECT_TRUE(read == 0 || steps == (missing + 1) % levels)
            << name << ": " << steps << " steps after the one before, " << missing << " missing";
        missing = 0;
        before = first;
        ++read;
    }
    EXPECT_EQ(read, written);
}

} // namespace scenario
