// console_posix_test.cpp - telling terminals from files and pipes
#include "platform/console.h"

#include "tests/support/environment_guard.h"
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

TEST(PosixConsole, ShowsColourOnATerminalThatHasSomeUnlessTheUserWantsNone) {
    const support::PseudoTerminal terminal;
    const int port = open(terminal.PortName().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(port, 0);
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    ASSERT_GE(null, 0);
    {
        const support::EnvironmentGuard noColour("NO_COLOR");
        const support::EnvironmentGuard kind("TERM", "xterm");
        EXPECT_TRUE(ShowsColour(port));
        EXPECT_FALSE(ShowsColour(null));
        const support::EnvironmentGuard dumb("TERM", "dumb");
        EXPECT_FALSE(ShowsColour(port));
        const support::EnvironmentGuard unknown("TERM");
        EXPECT_FALSE(ShowsColour(port));
    }
    const support::EnvironmentGuard noColour("NO_COLOR", "1");
    const support::EnvironmentGuard kind("TERM", "xterm");
    EXPECT_FALSE(ShowsColour(port));
    close(null);
    close(port);
}

} // namespace
} // namespace platform
