// script_lines_test.cpp - tests of splitting scripts into commands
#include "apps/view/script_lines.h"

#include <gtest/gtest.h>

namespace {

TEST(ScriptLines, LeaveOutCommentsAndBlanks) {
    EXPECT_EQ(ScriptLines("# all\r\n\r\n  unplug A \r\nplug A\n\t# x\nclear"),
              (std::vector<std::string>{"unplug A", "plug A", "clear"}));
    EXPECT_TRUE(ScriptLines(" \n").empty());
}

} // namespace
