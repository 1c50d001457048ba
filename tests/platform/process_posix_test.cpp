// process_posix_test.cpp - input, signals and environment of child processes
#include "platform/process.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

namespace platform {
namespace {

constexpr std::uint32_t kChildLimitMs = 60000;

ProcessStart Command(const std::string& program, const std::vector<std::string>& arguments = {}) {
    ProcessStart start;
    start.program = program;
    start.arguments = arguments;
    return start;
}

TEST(PosixProcess, PassesItsInputOnUntilItIsClosed) {
    Process process;
    ASSERT_TRUE(process.Start(Command("/bin/cat")));
    const std::string large(1 << 20, 'x');
    EXPECT_TRUE(process.Write("first\n"));
    EXPECT_TRUE(process.Write(""));
    EXPECT_TRUE(process.Write(large));
    process.CloseInput();
    int status = -1;
    ASSERT_TRUE(process.Wait(kChildLimitMs, status));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(process.Output(), "first\n" + large);
}

TEST(PosixProcess, RefusesInputForAChildThatHasEnded) {
    Process process;
    ASSERT_TRUE(process.Start(Command("/bin/true")));
    int status = -1;
    ASSERT_TRUE(process.Wait(kChildLimitMs, status));
    EXPECT_FALSE(process.Write("unread"));
}

TEST(PosixProcess, IsInterruptedWhileItRuns) {
    Process process;
    EXPECT_FALSE(process.Interrupt());
    process.Kill();
    ASSERT_TRUE(process.Start(Command("/bin/sleep", {"600"})));
    EXPECT_TRUE(process.Interrupt());
    int status = -1;
    ASSERT_TRUE(process.Wait(kChildLimitMs, status));
    EXPECT_EQ(status, 128 + SIGINT);
    EXPECT_FALSE(process.Interrupt());
    process.Kill();
    EXPECT_TRUE(process.Wait(0, status));
    EXPECT_EQ(status, 128 + SIGINT);
}

TEST(PosixProcess, GetsAnEnvironmentWithoutTheVariablesThatAreRemoved) {
    ASSERT_EQ(setenv("MIVORA_PROCESS_TEST_KEPT", "one=two", 1), 0);
    ASSERT_EQ(setenv("MIVORA_PROCESS_TEST_REMOVED", "value", 1), 0);
    ProcessStart start = Command("/usr/bin/env");
    start.environment = {{"MIVORA_PROCESS_TEST_REMOVED", ""}};
    Process process;
    ASSERT_TRUE(process.Start(start));
    int status = -1;
    ASSERT_TRUE(process.Wait(kChildLimitMs, status));
    EXPECT_NE(process.Output().find("MIVORA_PROCESS_TEST_KEPT=one=two\n"), std::string::npos);
    EXPECT_EQ(process.Output().find("MIVORA_PROCESS_TEST_REMOVED"), std::string::npos);
    unsetenv("MIVORA_PROCESS_TEST_KEPT");
    unsetenv("MIVORA_PROCESS_TEST_REMOVED");
}

} // namespace
} // namespace platform
