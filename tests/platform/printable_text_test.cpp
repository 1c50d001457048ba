// printable_text_test.cpp - control characters in printed texts
#include "platform/printable_text.h"

#include <gtest/gtest.h>

#include <string>

namespace platform {
namespace {

TEST(PrintableText, ShowsEveryAsciiControlCharacterAsItsNumber) {
    EXPECT_EQ(PrintableText("a\x1B[2Jb"), "a\\x1B[2Jb");
    EXPECT_EQ(PrintableText("a\r\nb\tc\x7F"), "a\\x0D\\x0Ab\\x09c\\x7F");
    EXPECT_EQ(PrintableText(std::string("\0", 1)), "\\x00");
    for (int byte = 0; byte < 128; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(PrintableText(text) == text, byte >= 0x20 && byte != 0x7F) << byte;
    }
}

TEST(PrintableText, ShowsTheControlCharactersBehindAsciiToo) {
    EXPECT_EQ(PrintableText("\xC2\x9B"
                            "31m"),
              "\\xC2\\x9B31m");
    EXPECT_EQ(PrintableText("\xC2\x80\xC2\x9F"), "\\xC2\\x80\\xC2\\x9F");
}

TEST(PrintableText, KeepsAllElse) {
    for (const std::string text : {"", "plain \\x1B text", "caf\xC3\xA9 \xC2\xA0\xC2\xBF",
                                   "\xE2\x82\xAC \xF0\x9F\x93\xB7", "caf\xE9 \x9B", "\xC2"}) {
        EXPECT_EQ(PrintableText(text), text);
    }
}

TEST(PrintableLines, KeepsLineFeedsOnly) {
    EXPECT_EQ(PrintableLines("a\n  b\r\n\x1B"), "a\n  b\\x0D\n\\x1B");
}

} // namespace
} // namespace platform
