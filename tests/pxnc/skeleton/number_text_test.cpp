// number_text_test.cpp - numbers to text and back
#include "pxnc/skeleton/number_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace skeleton_tests {
namespace {

using namespace skeleton;

TEST(NumberText, ReadsWholeIntegersOnly) {
    std::int64_t value = 0;
    EXPECT_TRUE(ParseInt("-12", value));
    EXPECT_EQ(value, -12);
    EXPECT_TRUE(ParseInt("0xFFFFFFFFFFFFFFFF", value));
    EXPECT_EQ(value, -1);
    EXPECT_TRUE(ParseInt("9223372036854775807", value));
    EXPECT_EQ(value, std::numeric_limits<std::int64_t>::max());
    for (const char* text : {"", "0x", "12a", " 1", "1 ", "+1", "9223372036854775808"}) {
        EXPECT_FALSE(ParseInt(text, value)) << text;
    }
}

TEST(NumberText, WritesFloatsThatReadBackTheSame) {
    for (const double number : {0.1, 1e300, -2.5, 1.0 / 3}) {
        double value = 0;
        EXPECT_TRUE(ParseFloat(FormatFloat(number), value));
        EXPECT_EQ(value, number);
    }
    double value = 0;
    EXPECT_FALSE(ParseFloat("1,5", value));
}

TEST(NumberText, KnowsTheWordsOfBooleans) {
    bool value = false;
    EXPECT_TRUE(ParseBool("ON", value) && value);
    EXPECT_TRUE(ParseBool("False", value) && !value);
    EXPECT_FALSE(ParseBool("yes", value));
}

TEST(NumberText, WritesBytesInHexadecimal) {
    const std::string bytes("\x00\xAF\x7F", 3);
    EXPECT_EQ(ToHex(bytes), "00AF7F");
    std::string read;
    EXPECT_TRUE(FromHex("00af7F", read));
    EXPECT_EQ(read, bytes);
    EXPECT_FALSE(FromHex("0", read));
    EXPECT_FALSE(FromHex("0g", read));
}

} // namespace
} // namespace skeleton_tests
