#include "platform/interrupt.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(ConsoleInterrupt, IsNotRequestedAfterInstalling) {
    EXPECT_TRUE(InstallInterruptHandler());
    EXPECT_FALSE(InterruptRequested());
    EXPECT_TRUE(InstallInterruptHandler());
    EXPECT_FALSE(InterruptRequested());
}

} // namespace
} // namespace platform
