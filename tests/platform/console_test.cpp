// console_test.cpp - descriptors that are not open
#include "platform/console.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(Console, AnInvalidDescriptorIsNotATerminal) {
    EXPECT_FALSE(IsTerminal(-1));
    EXPECT_FALSE(IsTerminal(4000));
}

} // namespace
} // namespace platform
