// parse_number_test.cpp - tests of parsing numbers
#include "apps/common/parse_number.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(ParseUnsigned, ReadsDecimalAndHexadecimal) {
    EXPECT_EQ(ParseUnsigned("0"), 0u);
    EXPECT_EQ(ParseUnsigned("007"), 7u);
    EXPECT_EQ(ParseUnsigned("0xABcd"), 0xABCDu);
    EXPECT_EQ(ParseUnsigned("0X10"), 16u);
    EXPECT_EQ(ParseUnsigned("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
}

TEST(ParseUnsigned, RefusesEverythingElse) {
    for (const char* text : {"", " 1", "1 ", "-1", "+1", "0x", "0x-1", "1.0", "ten",
                             "18446744073709551616", "0x10000000000000000"}) {
        EXPECT_FALSE(ParseUnsigned(text)) << text;
    }
}

TEST(ParseSigned, ReadsTheWholeRange) {
    EXPECT_EQ(ParseSigned("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(ParseSigned("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(ParseSigned("+5"), 5);
    EXPECT_EQ(ParseSigned("-0x10"), -16);
    EXPECT_EQ(ParseSigned("-0"), 0);
}

TEST(ParseSigned, RefusesEverythingElse) {
    for (const char* text :
         {"", "-", "+", "+-1", "--1", "9223372036854775808", "-9223372036854775809", "1e3"}) {
        EXPECT_FALSE(ParseSigned(text)) << text;
    }
}

TEST(ParseTruth, ReadsWhatPeopleType) {
    for (const char* yes : {"true", "TRUE", "1", "On"}) {
        EXPECT_EQ(ParseTruth(yes), true) << yes;
    }
    for (const char* no : {"false", "0", "oFF"}) {
        EXPECT_EQ(ParseTruth(no), false) << no;
    }
    for (const char* neither : {"", "yes", "2", "true "}) {
        EXPECT_EQ(ParseTruth(neither), std::nullopt) << neither;
    }
}

TEST(ParseDouble, ReadsWhatPeopleType) {
    EXPECT_EQ(ParseDouble("1.5"), 1.5);
    EXPECT_EQ(ParseDouble("-2e3"), -2000.0);
    EXPECT_EQ(ParseDouble("+7"), 7.0);
    EXPECT_FALSE(ParseDouble("1,5"));
    EXPECT_FALSE(ParseDouble(""));
    EXPECT_FALSE(ParseDouble("1.5 ms"));
}

} // namespace
