// interrupt_posix_test.cpp - SIGINT and SIGTERM
#include "platform/interrupt.h"

#include "tests/support/posix/pseudo_terminal.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

namespace platform {
namespace {

class Interrupt : public testing::Test {
protected:
    ~Interrupt() override {
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
    }
};

using InterruptDeathTest = Interrupt;

TEST_F(Interrupt, IsRequestedByEitherSignal) {
    for (const int number : {SIGINT, SIGTERM}) {
        ASSERT_TRUE(InstallInterruptHandler());
        EXPECT_FALSE(InterruptRequested());
        ASSERT_EQ(std::raise(number), 0);
        EXPECT_TRUE(InterruptRequested());
    }
}

TEST_F(Interrupt, InstallingClearsAnEarlierRequest) {
    ASSERT_TRUE(InstallInterruptHandler());
    ASSERT_EQ(std::raise(SIGINT), 0);
    ASSERT_TRUE(InstallInterruptHandler());
    EXPECT_FALSE(InterruptRequested());
}

// True when the thread is blocked in a system call.
bool IsAsleep(pid_t thread) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    const std::string status((std::istreambuf_iterator<char>(file)), {});
    return status.find(") S ") != std::string::npos;
}

TEST_F(Interrupt, InterruptsABlockingRead) {
    ASSERT_TRUE(InstallInterruptHandler());
    const support::PseudoTerminal terminal;
    const int descriptor = open(terminal.PortName().c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    const pthread_t reader = pthread_self();
    std::atomic<pid_t> readerId{0};
    std::atomic<bool> returned{false};
    std::thread user([&] {
        support::WaitUntil([&] { return readerId != 0 && IsAsleep(readerId); });
        pthread_kill(reader, SIGINT);
        if (!support::WaitUntil([&] { return returned.load(); })) {
            terminal.Write("too late\n");
        }
    });
    char buffer[16];
    readerId = gettid();
    const ssize_t count = read(descriptor, buffer, sizeof buffer);
    const int reason = errno;
    returned = true;
    EXPECT_EQ(count, -1);
    EXPECT_EQ(reason, EINTR);
    EXPECT_TRUE(InterruptRequested());
    user.join();
    close(descriptor);
}

TEST_F(InterruptDeathTest, TheSecondOneEndsTheProgram) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            InstallInterruptHandler();
            std::raise(SIGINT);
            std::raise(SIGINT);
        },
        testing::KilledBySignal(SIGINT), "");
}

TEST_F(Interrupt, MayBeRequestedSeveralTimes) {
    ASSERT_TRUE(InstallInterruptHandler(2));
    EXPECT_EQ(InterruptCount(), 0u);
    ASSERT_EQ(std::raise(SIGINT), 0);
    EXPECT_EQ(InterruptCount(), 1u);
    ASSERT_EQ(std::raise(SIGINT), 0);
    EXPECT_EQ(InterruptCount(), 2u);
    EXPECT_TRUE(InterruptRequested());
    ASSERT_TRUE(InstallInterruptHandler(2));
    EXPECT_EQ(InterruptCount(), 0u);
}

TEST_F(InterruptDeathTest, TheOneAfterThoseEndsTheProgram) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            InstallInterruptHandler(2);
            std::raise(SIGTERM);
            std::raise(SIGINT);
            std::raise(SIGINT);
        },
        testing::KilledBySignal(SIGINT), "");
}

} // namespace
} // namespace platform
