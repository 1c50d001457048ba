// json_text_test.cpp - tests of building JSON text
#include "apps/common/json_text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>

namespace {

TEST(JsonText, EscapesControlCharacters) {
    EXPECT_EQ(JsonText(std::string("a\0b\n\x01", 5)), "\"a\\u0000b\\n\\u0001\"");
    EXPECT_EQ(JsonText("\"\\"), "\"\\\"\\\\\"");
}

TEST(JsonText, KeepsUtf8) {
    EXPECT_EQ(JsonText("\xC2\xB5s \xE2\x82\xAC \xF0\x9F\x93\xB7"),
              "\"\xC2\xB5s \xE2\x82\xAC \xF0\x9F\x93\xB7\"");
}

TEST(JsonText, ReplacesBytesThatAreNotUtf8) {
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
            EXPECT_TRUE(nlohmann::json::accept(JsonText(text))) << first << " " << second;
        }
    }
}

TEST(JsonObject, KeepsTheOrderOfKeys) {
    EXPECT_EQ(JsonObject({{"z", 1}, {"a", nullptr}, {"m", true}}).Text(),
              "{\"z\":1,\"a\":null,\"m\":true}");
    EXPECT_EQ(JsonObject({}).Text(), "{}");
}

TEST(JsonArray, JoinsValuesOfAllKinds) {
    EXPECT_EQ(JsonArray({std::uint8_t{255}, std::int64_t{-1}, ~std::uint64_t{0}, 0.5, 3.0, "a",
                         JsonObject({{"k", JsonArray({})}})})
                  .Text(),
              "[255,-1,18446744073709551615,0.5,3.0,\"a\",{\"k\":[]}]");
}

TEST(JsonValue, HasNoNumberForInfinity) {
    EXPECT_EQ(JsonValue(std::numeric_limits<double>::infinity()).Text(), "null");
    EXPECT_EQ(JsonValue(std::numeric_limits<double>::quiet_NaN()).Text(), "null");
}

TEST(JsonReport, BeginsWithTheSchema) {
    EXPECT_EQ(JsonReport({{"a", 2}, {"b", JsonReport({}).Text()}}).Text(),
              R"({"schema":1,"a":2,"b":"{\"schema\":1}"})");
}

TEST(JsonCounts, ReadsTheMembersThatAreCounts) {
    EXPECT_EQ(JsonCounts("{\"a\":1,\"b\":-1,\"c\":1.5,\"d\":\"2\",\"e\":{\"f\":3},\"g\":"
                         "18446744073709551615}"),
              (std::map<std::string, std::uint64_t>{{"a", 1}, {"g", ~std::uint64_t{0}}}));
}

TEST(JsonCounts, FindsNoneInOtherTexts) {
    for (const char* text : {"", "[1]", "7", "{\"a\":1", "ok"}) {
        EXPECT_TRUE(JsonCounts(text).empty()) << text;
    }
}

} // namespace
