// shell_line_test.cpp - tests of parsing a line of the shell
#include "apps/common/shell_line.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<std::string>;

TEST(ShellLine, BlankLinesAndCommentsAreEmpty) {
    EXPECT_TRUE(ShellLine("").IsEmpty());
    EXPECT_TRUE(ShellLine(" \t\r").IsEmpty());
    EXPECT_TRUE(ShellLine("# Init").IsEmpty());
    EXPECT_TRUE(ShellLine("  #Init").IsEmpty());
    EXPECT_FALSE(ShellLine("Init#").IsEmpty());
}

TEST(ShellLine, SeparatesNameAndArgumentsAtBlanks) {
    const ShellLine line(" \tSnap   1\t0x2  three\r");
    EXPECT_EQ(line.Name(), "Snap");
    EXPECT_EQ(line.Arguments(), (Texts{"1", "0x2", "three"}));
    EXPECT_EQ(line.Rest(), "1\t0x2  three");
    EXPECT_EQ(line.Error(), "");
}

TEST(ShellLine, KeepsBlanksInsideDoubleQuotes) {
    const ShellLine line("SaveBuffer 0 \"C:\\my images\\a.png\" \"\"");
    EXPECT_EQ(line.Arguments(), (Texts{"0", "C:\\my images\\a.png", ""}));
}

TEST(ShellLine, TakesTwoDoubleQuotesInsideAsOne) {
    EXPECT_EQ(ShellLine("Log \"a \"\"b\"\" c\"").Arguments(), (Texts{"a \"b\" c"}));
    EXPECT_EQ(ShellLine("Log \"\"\"\"").Arguments(), (Texts{"\""}));
}

TEST(ShellLine, TakesABackslashAtTheEndOfAText) {
    EXPECT_EQ(ShellLine("SetGrabberIni \"C:\\dir\\\" 0").Arguments(), (Texts{"C:\\dir\\", "0"}));
}

TEST(ShellLine, ReportsAMissingDoubleQuote) {
    EXPECT_EQ(ShellLine("Log \"abc").Error(), "a double quote is missing");
    EXPECT_EQ(ShellLine("Log \"abc\"\"").Error(), "a double quote is missing");
}

TEST(ShellLine, ReportsAMissingBlankAfterADoubleQuote) {
    EXPECT_EQ(ShellLine("Log \"abc\"d").Error(), "a blank is missing behind a double quote");
}

TEST(ShellLine, KeepsAQuoteInsideAWord) {
    EXPECT_EQ(ShellLine("Log a\"b").Arguments(), (Texts{"a\"b"}));
}

} // namespace
