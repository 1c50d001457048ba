#include "apps/common/json_text.h"

#include <gtest/gtest.h>

namespace {

TEST(JsonText, EscapesControlCharacters) {
    EXPECT_EQ(JsonText(std::string("a\0b\n\x01", 5)), "\"a\\u0000b\\n\\u0001\"");
    EXPECT_EQ(JsonText("\"\\"), "\"\\\"\\\\\"");
}

TEST(JsonText, KeepsUtf8) {
    EXPECT_EQ(JsonText("\xC2\xB5s \xE2\x82\xAC \xF0\x9F\x93\xB7"),
              "\"\xC2\xB5s \xE2\x82\xAC \xF0\x9F\x93\xB7\"");
}

TEST(JsonText, ReplacesBytesThatAreNoUtf8) {
    EXPECT_EQ(JsonText("a\xFFz"), "\"a\xEF\xBF\xBDz\"");
    EXPECT_EQ(JsonText("cut \xE2\x82"), "\"cut \xEF\xBF\xBD\"");
    EXPECT_EQ(JsonText("\xC0\xAF"), "\"\xEF\xBF\xBD\xEF\xBF\xBD\"");
    EXPECT_EQ(JsonText("\xED\xA0\x80").find('\xED'), std::string::npos);
}

TEST(JsonText, PrintsNullForANullPointer) {
    EXPECT_EQ(JsonText(static_cast<const char*>(nullptr)), "null");
}

TEST(JsonText, ReadsBackWhateverBytesAreInIt) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string text{static_cast<char>(first), static_cast<char>(second)};
            EXPECT_TRUE(Json::accept(JsonText(text))) << first << " " << second;
        }
    }
}

TEST(JsonDump, KeepsTheOrderOfKeys) {
    EXPECT_EQ(JsonDump({{"z", 1}, {"a", nullptr}, {"m", true}}), "{\"z\":1,\"a\":null,\"m\":true}");
}

} // namespace
