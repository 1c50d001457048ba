#include "ui/value_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

using namespace pyxen;

namespace {

using std::nullopt;

constexpr std::int64_t kLowestInteger = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighestInteger = std::numeric_limits<std::int64_t>::max();

TEST(FormatInteger, WritesAllDigitsOfSixtyFourBits) {
    EXPECT_EQ(FormatInteger(0), "0");
    EXPECT_EQ(FormatInteger(-17), "-17");
    EXPECT_EQ(FormatInteger(kLowestInteger), "-9223372036854775808");
    EXPECT_EQ(FormatInteger(kHighestInteger), "9223372036854775807");
}

TEST(FormatFloat, WritesSixDigitsAfterThePoint) {
    EXPECT_EQ(FormatFloat(0.0), "0.000000");
    EXPECT_EQ(FormatFloat(15000.5), "15000.500000");
    EXPECT_EQ(FormatFloat(-0.1234567), "-0.123457");
}

TEST(FormatFloat, HoldsTheLargestNumbers) {
    for (const double value :
         {std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest(),
          std::numeric_limits<double>::denorm_min()}) {
        char expected[400];
        std::snprintf(expected, sizeof expected, "%.6f", value);
        EXPECT_EQ(FormatFloat(value), expected);
    }
    EXPECT_EQ(FormatFloat(std::numeric_limits<double>::infinity()), "inf");
}

TEST(ParseInteger, ReadsTheNumberAtTheStart) {
    EXPECT_EQ(ParseInteger("42"), 42);
    EXPECT_EQ(ParseInteger("-42"), -42);
    EXPECT_EQ(ParseInteger("+42"), 42);
    EXPECT_EQ(ParseInteger(" \t42"), 42);
    EXPECT_EQ(ParseInteger("42abc"), 42);
    EXPECT_EQ(ParseInteger("42 43"), 42);
    EXPECT_EQ(ParseInteger("0042"), 42);
    EXPECT_EQ(ParseInteger("9223372036854775807"), kHighestInteger);
    EXPECT_EQ(ParseInteger("-9223372036854775808"), kLowestInteger);
}

TEST(ParseInteger, ReadsNothingWhereNoNumberStarts) {
    for (const char* const text : {"", "   ", "abc", "-", "+", "+-4", "-+4", "--4", ".5", "x42"}) {
        EXPECT_EQ(ParseInteger(text), nullopt) << text;
    }
}

TEST(ParseInteger, TakesTheNearestNumberBeyondSixtyFourBits) {
    EXPECT_EQ(ParseInteger("9223372036854775808"), kHighestInteger);
    EXPECT_EQ(ParseInteger("99999999999999999999999"), kHighestInteger);
    EXPECT_EQ(ParseInteger("-9223372036854775809"), kLowestInteger);
}

TEST(ParseFloat, ReadsTheLeadingRunOfNumberCharacters) {
    EXPECT_EQ(ParseFloat("12"), 12.0);
    EXPECT_EQ(ParseFloat("12abc"), 12.0);
    EXPECT_EQ(ParseFloat("-1.5"), -1.5);
    EXPECT_EQ(ParseFloat(".5"), 0.5);
    EXPECT_EQ(ParseFloat("5."), 5.0);
    EXPECT_EQ(ParseFloat("1.5.7"), 1.5);
    EXPECT_EQ(ParseFloat("1-2"), 1.0);
}

TEST(ParseFloat, KnowsNoExponentNoSignButMinusAndNoBlanks) {
    EXPECT_EQ(ParseFloat("2e3"), 2.0);
    for (const char* const text : {"", "abc", "+5", " 5", "-", "--5", ".", "-.", "inf", "nan"}) {
        EXPECT_EQ(ParseFloat(text), nullopt) << text;
    }
}

TEST(ParseFloat, GoesToTheEndsOfTheRange) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(ParseFloat(std::string(400, '9')), infinity);
    EXPECT_EQ(ParseFloat("-" + std::string(400, '9')), -infinity);
    const auto tiny = ParseFloat("-0." + std::string(400, '0') + "1");
    ASSERT_TRUE(tiny);
    EXPECT_EQ(*tiny, 0.0);
    EXPECT_TRUE(std::signbit(*tiny));
}

TEST(ClampValue, MovesIntoTheRange) {
    EXPECT_EQ(ClampValue(5, 0, 10), 5);
    EXPECT_EQ(ClampValue(-1, 0, 10), 0);
    EXPECT_EQ(ClampValue(11, 0, 10), 10);
    EXPECT_EQ(ClampValue(0.5, 1.0, 2.0), 1.0);
}

TEST(ClampValue, BearsARangeTheWrongWayRound) {
    EXPECT_EQ(ClampValue(5, 10, 0), 10);
    EXPECT_EQ(ClampValue(20, 10, 0), 0);
}

} // namespace
