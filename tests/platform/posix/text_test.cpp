#include "platform/text.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

struct Pair {
    const char* narrow;
    const wchar_t* wide;
};

// The first and the last character of every length, and the neighbours of the surrogates.
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
    "\x80",             // a continuation alone
    "a\xbf",            // another
    "\xc3",             // cut off
    "\xe2\x82",         // cut off
    "\xf0\x9f\x93",     // cut off
    "\xc3(",            // no continuation
    "\xe2\x82(",        // no continuation
    "\xc0\x80",         // too long for the terminator
    "\xc1\xbf",         // too long
    "\xe0\x9f\xbf",     // too long
    "\xf0\x8f\xbf\xbf", // too long
    "\xed\xa0\x80",     // first surrogate
    "\xed\xbf\xbf",     // last surrogate
    "\xf4\x90\x80\x80", // past the last code point
    "\xf5\x80\x80\x80", // no such lead
    "\xff",             // no such lead
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

TEST(Utf8Text, RefusesWhatIsNoCodePoint) {
    for (const unsigned value : {0xD800u, 0xDFFFu, 0x110000u, 0xFFFFFFFFu}) {
        const wchar_t wide[] = {L'a', static_cast<wchar_t>(value), L'\0'};
        EXPECT_EQ(WideToNarrow(wide), "") << value;
    }
}

} // namespace
} // namespace platform
