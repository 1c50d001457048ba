// format_text_test.cpp - texts in the log's format language
#include "sdk/format_text.h"

#include <gtest/gtest.h>

#include <cstdint>

using namespace pyxen;

namespace {

TEST(FormatText, IsWholeAndNoLonger) {
    EXPECT_EQ(FormatText("%s = %I64d (%u)", "Width", std::int64_t{-5}, 7u),
              std::string("Width = -5 (7)"));
    EXPECT_EQ(FormatText("%s", ""), std::string());
    const std::string longText(5000, 'x');
    EXPECT_EQ(FormatText("<%s>", longText.c_str()), "<" + longText + ">");
}

} // namespace
