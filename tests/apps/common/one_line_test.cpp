// one_line_test.cpp - tests of texts of several lines in one
#include "apps/common/one_line.h"

#include <gtest/gtest.h>

namespace {

TEST(OneLine, JoinsLinesWithoutTheirIndentation) {
    EXPECT_EQ(OneLine(""), "");
    EXPECT_EQ(OneLine("one"), "one");
    EXPECT_EQ(OneLine("one\n  two\nthree\n"), "one; two; three");
}

} // namespace
