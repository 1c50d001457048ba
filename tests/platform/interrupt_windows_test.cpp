// interrupt_windows_test.cpp - Ctrl-C in a console
#include "platform/interrupt.h"

#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <process.h>

namespace platform {
namespace {

// In a separate console, since the event is sent to every process of a console.
void PressCtrlC() {
    FreeConsole();
    AllocConsole();
    GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
}

// Wine ends the program with exit code 0.
bool IsDefaultTermination(int exitCode) {
    return exitCode == static_cast<int>(STATUS_CONTROL_C_EXIT) || exitCode == 0;
}

TEST(ConsoleInterrupt, IsNotRequestedAfterInstalling) {
    EXPECT_TRUE(InstallInterruptHandler());
    EXPECT_FALSE(InterruptRequested());
    EXPECT_TRUE(InstallInterruptHandler());
    EXPECT_FALSE(InterruptRequested());
}

TEST(ConsoleInterruptDeathTest, IsRequestedByCtrlC) {
    EXPECT_EXIT(
        {
            InstallInterruptHandler();
            InstallInterruptHandler();
            PressCtrlC();
            _exit(support::WaitUntil(&InterruptRequested) ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(ConsoleInterruptDeathTest, TheSecondOneEndsTheProgram) {
    EXPECT_EXIT(
        {
            InstallInterruptHandler();
            PressCtrlC();
            support::WaitUntil(&InterruptRequested);
            GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
            Sleep(30'000);
            _exit(1);
        },
        IsDefaultTermination, "");
}

} // namespace
} // namespace platform
