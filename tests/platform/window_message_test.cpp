#include "platform/window_message.h"

#include "platform/file_system.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(WindowMessage, ExistsOnWindows) {
    EXPECT_EQ(HasMessages(), kPathSeparator == '\\');
}

TEST(WindowMessage, IsNotPostedWhereThereIsNoReceiver) {
    EXPECT_FALSE(PostWindowMessage(nullptr, 0x400, 1, 2));
    EXPECT_FALSE(PostToThread(0, 0x400, 1, 2));
    EXPECT_FALSE(PostToThread(0xFFFFFFFC, 0x400, 1, 2));
}

TEST(WindowMessage, ADescriptorThatIsNoStreamIsNoTerminal) {
    EXPECT_FALSE(IsTerminal(-1));
    EXPECT_FALSE(IsTerminal(4000));
}

} // namespace
} // namespace platform
