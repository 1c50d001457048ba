// hex_bytes_test.cpp - tests of bytes as hexadecimal text
#include "apps/common/hex_bytes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

TEST(HexBytes, GoBothWays) {
    const std::vector<std::uint8_t> bytes{0, 0x7F, 0xA5, 0xFF};
    EXPECT_EQ(HexText(bytes), "007FA5FF");
    EXPECT_EQ(ParseHex("007FA5FF"), bytes);
    EXPECT_EQ(ParseHex("00 7f a5 ff"), bytes);
    EXPECT_EQ(ParseHex(""), std::vector<std::uint8_t>());
}

TEST(HexBytes, RefusesHalfBytesAndOtherLetters) {
    for (const char* text : {"0", "000", "0 0", "0x00", "GG", "-1", "+1"}) {
        EXPECT_FALSE(ParseHex(text)) << text;
    }
}

} // namespace
