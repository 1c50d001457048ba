// wait_until_test.cpp - waiting for a condition
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

namespace support {
namespace {

TEST(WaitUntil, ReturnsWhetherTheConditionBecameTrue) {
    int calls = 0;
    EXPECT_TRUE(WaitUntil([&] { return ++calls == 3; }));
    EXPECT_EQ(calls, 3);
    EXPECT_FALSE(WaitUntil([] { return false; }, 5));
    EXPECT_TRUE(WaitUntil([] { return true; }, 0));
}

} // namespace
} // namespace support
