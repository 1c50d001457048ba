// window_message_test.cpp - messages without a receiver
#include "platform/window_message.h"

#include "platform/file_system.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(WindowMessage, ExistsOnWindowsOnly) {
    EXPECT_EQ(HasMessages(), kPathSeparator == '\\');
}

TEST(WindowMessage, IsNotPostedWithoutAReceiver) {
    EXPECT_FALSE(PostWindowMessage(nullptr, 0x400, 1, 2));
    EXPECT_FALSE(PostToThread(0, 0x400, 1, 2));
    EXPECT_FALSE(PostToThread(0xFFFFFFFC, 0x400, 1, 2));
}

} // namespace
} // namespace platform
