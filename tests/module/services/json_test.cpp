// json_test.cpp - reading and writing JSON
#include "services/json.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

using namespace pyxen;

namespace {

JsonValue ReadGood(const std::string& text) {
    JsonValue value;
    std::string error;
    EXPECT_TRUE(ReadJson(text, value, error)) << text << ": " << error;
    return value;
}

std::string ErrorOf(const std::string& text) {
    JsonValue value;
    value.integer = 7;
    std::string error;
    EXPECT_FALSE(ReadJson(text, value, error)) << text;
    EXPECT_EQ(value.integer, 7);
    return error;
}

TEST(Json, ReadsEveryKind) {
    const JsonValue root = ReadGood(
        "\xEF\xBB\xBF {\"a\": null, \"b\": [true, false],\r\n\"c\": -12, \"d\": 1.5e2, \"e\": \"x\"}\t");
    ASSERT_EQ(root.kind, JsonKind::kObject);
    ASSERT_EQ(root.elements.size(), 5u);
    EXPECT_EQ(root.Find("a")->kind, JsonKind::kNull);
    EXPECT_EQ(root.Find("b")->kind, JsonKind::kArray);
    EXPECT_TRUE(root.Find("b")->elements[0].boolean);
    EXPECT_FALSE(root.Find("b")->elements[1].boolean);
    EXPECT_EQ(root.Find("c")->kind, JsonKind::kInteger);
    EXPECT_EQ(root.Find("c")->integer, -12);
    EXPECT_EQ(root.Find("c")->real, -12.0);
    EXPECT_EQ(root.Find("d")->kind, JsonKind::kReal);
    EXPECT_EQ(root.Find("d")->real, 150.0);
    EXPECT_EQ(root.Find("e")->text, "x");
    EXPECT_EQ(root.Find("f"), nullptr);
    EXPECT_EQ(root.Find("c")->line, 2u);
    EXPECT_EQ(root.Find("c")->column, 6u);
}

TEST(Json, ReadsTheEndsOfTheIntegers) {
    EXPECT_EQ(ReadGood("9223372036854775807").integer, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(ReadGood("-9223372036854775808").integer, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(ErrorOf("9223372036854775808"), "line 1, column 1: the number is out of range");
    EXPECT_EQ(ErrorOf("1e400"), "line 1, column 1: the number is out of range");
}

TEST(Json, ReadsEscapesAndCharacters) {
    EXPECT_EQ(ReadGood(R"("\"\\\/\b\f\n\r\t\u0041\u00e9\u20ac\ud83d\ude00")").text,
              "\"\\/\b\f\n\r\tA\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(ReadGood("\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\"").text,
              "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(Json, ReadsEveryFormOfAnExponent) {
    EXPECT_EQ(ReadGood("1E2").real, 100.0);
    EXPECT_EQ(ReadGood("1e+2").real, 100.0);
    EXPECT_EQ(ReadGood("1e-2").real, 0.01);
    EXPECT_EQ(ReadGood("0").integer, 0);
}

TEST(Json, SaysWhereAndWhyAValueIsWrong) {
    EXPECT_EQ(ErrorOf(""), "line 1, column 1: a value is expected");
    EXPECT_EQ(ErrorOf("{\"a\": 1,\n  \"a\": 2}"), "line 2, column 3: this name occurs twice");
    EXPECT_EQ(ErrorOf("[1,]"), "line 1, column 4: a value is expected");
    EXPECT_EQ(ErrorOf("[1 2]"), "line 1, column 4: a comma or ] is expected");
    EXPECT_EQ(ErrorOf("{\"a\" 1}"), "line 1, column 6: a colon is expected");
    EXPECT_EQ(ErrorOf("{a: 1}"), "line 1, column 2: a name in quotes is expected");
    EXPECT_EQ(ErrorOf("{\"a\": 1"), "line 1, column 8: a comma or } is expected");
    EXPECT_EQ(ErrorOf("1 2"), "line 1, column 3: nothing may follow the value");
    EXPECT_EQ(ErrorOf("truth"), "line 1, column 1: a value is expected");
    EXPECT_EQ(ErrorOf("\"a"), "line 1, column 3: the text does not end");
    EXPECT_EQ(ErrorOf("\"a\nb\""), "line 1, column 3: a control character in a text");
    EXPECT_EQ(ErrorOf("\"\\x\""), "line 1, column 2: an unknown escape");
    EXPECT_EQ(ErrorOf("\"\\"), "line 1, column 2: an unknown escape");
    EXPECT_EQ(ErrorOf("{\"a"), "line 1, column 4: the text does not end");
    EXPECT_EQ(ErrorOf("[1, "), "line 1, column 5: a value is expected");
    for (const char* const number : {"+1", "01", ".5", "1.", "1e", "-", "0x10", "NaN"}) {
        EXPECT_NE(ErrorOf(number), "") << number;
    }
}

TEST(Json, RefusesWhatIsNotUtf8) {
    for (const char* const bytes :
         {"\x80", "\xC0\x80", "\xC3", "\xE0\x80\x80", "\xED\xA0\x80", "\xF0\x80\x80\x80",
          "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE2\x82", "\xE2(\xAC", "\xF0(\x98\x80",
          "\xF0\x9F(\x80", "\xF0\x9F\x98("}) {
        EXPECT_FALSE(IsUtf8(bytes));
        EXPECT_EQ(ErrorOf(std::string("\"") + bytes + "\""), "line 1, column 2: not UTF-8");
    }
    for (const char* const escape :
         {R"("\ud83d")", R"("\ude00")", R"("\ud83d\u0041")", R"("\ud83d\uffff")", R"("\u12")",
          R"("\u12G4")", R"("\ud83dabcdef")", R"("\ud83d\n1234")"}) {
        EXPECT_NE(ErrorOf(escape), "") << escape;
    }
    EXPECT_EQ(ReadGood(R"("\uffff")").text, "\xEF\xBF\xBF");
}

TEST(Json, RefusesHostileDepthAndNumbersOfValues) {
    const std::string deep(kMostJsonDepth, '[');
    EXPECT_EQ(ReadGood(deep + std::string(kMostJsonDepth, ']')).kind, JsonKind::kArray);
    EXPECT_EQ(ErrorOf(std::string(100000, '[')), "line 1, column 17: too deep");
    std::string many = "[0";
    for (std::size_t count = 0; count < kMostJsonValues; ++count) {
        many += ",0";
    }
    EXPECT_NE(ErrorOf(many + "]").find("too many values"), std::string::npos);
    std::string members = "{\"a\": 0";
    for (int count = 0; count < 64; ++count) {
        members += ", \"" + std::to_string(count) + "\": 0";
    }
    EXPECT_NE(ErrorOf(members + "}").find("too many members"), std::string::npos);
}

TEST(Json, QuotesTextsSoThatTheyAreReadAgain) {
    std::string text = "\"\\/\x7F \xC3\xA9";
    for (char letter = 0; letter < 0x20; ++letter) {
        text += letter;
    }
    EXPECT_EQ(ReadGood(QuoteJson(text)).text, text);
    EXPECT_EQ(QuoteJson("a\n\"\x01"), "\"a\\n\\\"\\u0001\"");
}

TEST(Json, WritesNumbersSoThatTheyAreReadAgain) {
    for (const double number : {0.0, 0.1, -1e300, 1.0 / 3, 5e-324, 1e22, 123456789.0}) {
        EXPECT_EQ(ReadGood(JsonNumber(number)).real, number);
    }
    EXPECT_EQ(JsonNumber(0.1), "0.1");
    EXPECT_EQ(JsonNumber(10), "10");
}

} // namespace
