// console_posix_test.cpp - telling terminals from files and pipes
#include "platform/console.h"

#include "tests/support/posix/pseudo_terminal.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(PosixConsole, DistinguishesATerminalFromAPipeAndTheNullDevice) {
    const support::PseudoTerminal terminal;
    const int port = open(terminal.PortName().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(port, 0);
    EXPECT_TRUE(IsTerminal(port));
    close(port);

    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_FALSE(IsTerminal(ends[0]));
    EXPECT_FALSE(IsTerminal(ends[1]));
    close(ends[0]);
    close(ends[1]);

    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    ASSERT_GE(null, 0);
    EXPECT_FALSE(IsTerminal(null));
    close(null);
}

} // namespace
} // namespace platform
