// format_handling_test.cpp - tests of how the module hands over pixel formats
#include "apps/common/format_handling.h"

#include <gtest/gtest.h>

namespace {

FormatHandling Handling(std::int64_t code, std::uint32_t components, std::uint32_t allocatedBits) {
    ServiceValue format;
    format.integer = code;
    ImageLayout layout;
    layout.components = components;
    layout.allocatedBits = allocatedBits;
    return HandlingOf(format, layout);
}

TEST(FormatHandling, IsToldByTheBitsOfAPixel) {
    EXPECT_EQ(Handling(0x01080001, 1, 8), FormatHandling::kAsItIs) << "Mono8";
    EXPECT_EQ(Handling(0x01100005, 1, 16), FormatHandling::kAsItIs) << "Mono12";
    EXPECT_EQ(Handling(0x02180014, 3, 8), FormatHandling::kAsItIs) << "RGB8";
    EXPECT_EQ(Handling(0x82200001, 4, 8), FormatHandling::kAsItIs) << "a code of the maker's own";
    EXPECT_EQ(Handling(0x010C0047, 1, 16), FormatHandling::kConverted) << "Mono12p";
    EXPECT_EQ(Handling(0x010C0006, 1, 16), FormatHandling::kConverted) << "Mono12Packed";
    EXPECT_EQ(Handling(0x02180020, 3, 8), FormatHandling::kConverted) << "YUV444_8";
    EXPECT_EQ(Handling(0x0210001F, 3, 8), FormatHandling::kConverted) << "YUV422_8";
    EXPECT_EQ(Handling(0x0224005D, 3, 16), FormatHandling::kConvertedInPart) << "RGB12p";
    EXPECT_EQ(Handling(0x0228004D, 4, 16), FormatHandling::kConvertedInPart) << "BGRa10p";
    EXPECT_EQ(Handling(0x01080001, 1, 0), FormatHandling::kAsItIs) << "an unknown layout";
    EXPECT_EQ(Handling(1, 1, 16), FormatHandling::kAsItIs) << "no number of the convention";
}

TEST(FormatHandling, WarnsOfImagesThatLookWrong) {
    ServiceValue format;
    format.integer = 0x0224005D;
    format.text = "RGB12p";
    ImageLayout layout;
    layout.components = 3;
    layout.allocatedBits = 16;
    EXPECT_EQ(FormatWarning(format, layout).find("images in RGB12p look wrong: "), 0u);
    format.integer = 0x0230001A;
    EXPECT_EQ(FormatWarning(format, layout), "");
}

} // namespace
