// text_posix_test.cpp - UTF-8
#include "platform/text.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

struct Pair {
    const char* narrow;
    const wchar_t* wide;
};

// The first and last character of every encoded length, and those next to the surrogates.
constexpr Pair kValid[] = {
    {"\x7f", L"\x7f"},
    {"\xc2\x80", L"\x80"},
    {"\xdf\xbf", L"\x7ff"},
    {"\xe0\xa0\x80", L"\x800"},
    {"\xed\x9f\xbf", L"\xd7ff"},
    {"\xee\x80\x80", L"\xe000"},
    {"\xef\xbf\xbf", L"\xffff"},
    {"\xf0\x90\x80\x80", L"\x10000"},
    {"\xf4\x8f\xbf\xbf", L"\x10ffff"},
    {"\xc2\xb5s \xe2\x84\x83 \xf0\x9f\x93\xb7!", L"\xb5s \x2103 \x1f4f7!"},
};

constexpr const char* kInvalid[] = {
    "\x80",             // continuation byte without a lead byte
    "a\xbf",            // the same after a character
    "\xc3",             // truncated
    "\xe2\x82",         // truncated
    "\xf0\x9f\x93",     // truncated
    "\xc3(",            // not a continuation byte
    "\xe2\x82(",        // not a continuation byte
    "\xc0\x80",         // overlong encoding of the terminator
    "\xc1\xbf",         // overlong encoding
    "\xe0\x9f\xbf",     // overlong encoding
    "\xf0\x8f\xbf\xbf", // overlong encoding
    "\xed\xa0\x80",     // first surrogate
    "\xed\xbf\xbf",     // last surrogate
    "\xf4\x90\x80\x80", // beyond the last code point
    "\xf5\x80\x80\x80", // invalid lead byte
    "\xff",             // invalid lead byte
};

TEST(Utf8Text, ConvertsEveryLengthBothWays) {
    for (const Pair& pair : kValid) {
        const std::wstring expected = pair.wide;
        wchar_t wide[32];
        EXPECT_EQ(NarrowToWide(pair.narrow, nullptr, 0), expected.size() + 1) << pair.narrow;
        EXPECT_EQ(NarrowToWide(pair.narrow, wide, 32), expected.size() + 1) << pair.narrow;
        EXPECT_EQ(wide, expected) << pair.narrow;
        EXPECT_EQ(WideToNarrow(pair.wide), pair.narrow);
    }
}

TEST(Utf8Text, RefusesInvalidBytes) {
    for (const char* narrow : kInvalid) {
        wchar_t wide[32];
        EXPECT_EQ(NarrowToWide(narrow, nullptr, 0), 0u) << testing::PrintToString(narrow);
        EXPECT_EQ(NarrowToWide(narrow, wide, 32), 0u) << testing::PrintToString(narrow);
    }
}

TEST(Utf8Text, RefusesInvalidCodePoints) {
    for (const unsigned value : {0xD800u, 0xDFFFu, 0x110000u, 0xFFFFFFFFu}) {
        const wchar_t wide[] = {L'a', static_cast<wchar_t>(value), L'\0'};
        EXPECT_EQ(WideToNarrow(wide), "") << value;
    }
}

} // namespace
} // namespace platform
