// text_test.cpp - conversions that work with every code page, comparison without case
#include "platform/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace platform {
namespace {

TEST(Text, ConvertsAsciiBothWays) {
    wchar_t wide[32];
    EXPECT_EQ(NarrowToWide("PxnC.xml", wide, 32), 9u);
    EXPECT_STREQ(wide, L"PxnC.xml");
    EXPECT_EQ(WideToNarrow(L"PxnC.xml"), "PxnC.xml");
}

TEST(Text, ConvertsEmptyText) {
    wchar_t wide[2] = L"x";
    EXPECT_EQ(NarrowToWide("", wide, 2), 1u);
    EXPECT_STREQ(wide, L"");
    EXPECT_EQ(WideToNarrow(L""), "");
}

TEST(Text, RefusesNull) {
    wchar_t wide[2] = L"x";
    EXPECT_EQ(NarrowToWide(nullptr, wide, 2), 0u);
    EXPECT_EQ(NarrowToWide(nullptr, nullptr, 0), 0u);
    EXPECT_EQ(WideToNarrow(nullptr), "");
}

TEST(Text, CountsTheTerminator) {
    wchar_t wide[8] = L"kept";
    EXPECT_EQ(NarrowToWide("abc", nullptr, 0), 4u);
    EXPECT_EQ(NarrowToWide("abc", nullptr, 8), 4u);
    EXPECT_EQ(NarrowToWide("abc", wide, 0), 4u);
    EXPECT_STREQ(wide, L"kept");
}

TEST(Text, FillsABufferOfExactlyTheRightSize) {
    wchar_t wide[5] = {L'#', L'#', L'#', L'#', L'#'};
    EXPECT_EQ(NarrowToWide("abc", wide, 4), 4u);
    EXPECT_STREQ(wide, L"abc");
    EXPECT_EQ(wide[4], L'#');
}

TEST(Text, NeverWritesPastTheBuffer) {
    wchar_t wide[5] = {L'#', L'#', L'#', L'#', L'#'};
    EXPECT_EQ(NarrowToWide("abc", wide, 3), 0u);
    EXPECT_EQ(wide[3], L'#');
    EXPECT_EQ(NarrowToWide("abc", wide, 1), 0u);
    EXPECT_EQ(wide[3], L'#');
}

TEST(Text, ConvertsAnAccentedLetterBothWays) {
    const std::string narrow = WideToNarrow(L"caf\u00e9");
    ASSERT_FALSE(narrow.empty());
    wchar_t wide[16];
    EXPECT_EQ(NarrowToWide(narrow.c_str(), wide, 16), 5u);
    EXPECT_STREQ(wide, L"caf\u00e9");
}

TEST(Text, RefusesHalfASurrogatePair) {
    const wchar_t half[] = {L'a', static_cast<wchar_t>(0xD800), L'b', L'\0'};
    EXPECT_EQ(WideToNarrow(half), "");
}

TEST(Text, ComparesLettersWithoutCase) {
    EXPECT_EQ(CompareNoCase("", ""), 0);
    EXPECT_EQ(CompareNoCase("ABCDEFGHIJKLMNOPQRSTUVWXYZ", "abcdefghijklmnopqrstuvwxyz"), 0);
    EXPECT_EQ(CompareNoCase("TransportLayer", "transportLAYER"), 0);
    EXPECT_LT(CompareNoCase("abc", "ABD"), 0);
    EXPECT_GT(CompareNoCase("ABD", "abc"), 0);
    EXPECT_LT(CompareNoCase("ab", "ABC"), 0);
    EXPECT_GT(CompareNoCase("ABC", "ab"), 0);
    EXPECT_LT(CompareNoCase("", "a"), 0);
    EXPECT_GT(CompareNoCase("a", ""), 0);
}

TEST(Text, ComparesOtherCharactersExactly) {
    EXPECT_NE(CompareNoCase("[", "{"), 0);
    EXPECT_NE(CompareNoCase("@", "`"), 0);
    EXPECT_NE(CompareNoCase("\xc4", "\xe4"), 0);
}

TEST(Text, OrdersNonAsciiBytesLast) {
    EXPECT_GT(CompareNoCase("\xc3\xa9", "z"), 0);
    EXPECT_LT(CompareNoCase("z", "\xc3\xa9"), 0);
}

TEST(Text, OrdersLettersAsTheirLowerCase) {
    EXPECT_GT(CompareNoCase("A", "_"), 0);
}

} // namespace
} // namespace platform
