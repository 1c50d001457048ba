// failing_calls_posix_test.cpp - system calls that fail or are interrupted
#include "platform/clock.h"
#include "platform/console.h"
#include "platform/file_lock.h"
#include "platform/file_system.h"
#include "platform/interrupt.h"
#include "platform/mapped_file.h"
#include "platform/process.h"
#include "platform/serial_port.h"
#include "platform/thread.h"
#include "tests/support/posix/failing_calls.h"
#include "tests/support/posix/pseudo_terminal.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <string>

#include <unistd.h>

namespace platform {
namespace {

using support::FailingCalls;

class FailingSerialPort : public testing::Test {
protected:
    bool Open(std::string* error = nullptr) {
        return port.Open(terminal.PortName(), 9600, SerialParity::kNone, 8, SerialStopBits::kOne,
                         error);
    }

    support::PseudoTerminal terminal;
    SerialPort port;
};

TEST_F(FailingSerialPort, IsNotOpenedWithoutItsSettings) {
    struct Failure {
        const char* function;
        int spared;
    };
    for (const Failure& failure :
         {Failure{"tcgetattr", 0}, Failure{"tcgetattr", 1}, Failure{"tcsetattr", 0},
          Failure{"cfsetispeed", 0}, Failure{"cfsetospeed", 0}, Failure{"cfgetospeed", 0}}) {
        std::string error;
        {
            const FailingCalls failing(failure.function, EIO, 1, failure.spared);
            EXPECT_FALSE(Open(&error)) << failure.function;
            EXPECT_EQ(failing.Failed(), 1) << failure.function;
        }
        EXPECT_FALSE(error.empty()) << failure.function;
        EXPECT_FALSE(port.Purge(true, true)) << "the port counts as open";
    }
    EXPECT_TRUE(Open());
}

TEST_F(FailingSerialPort, ReportsThatPurgingFailed) {
    ASSERT_TRUE(Open());
    for (const int spared : {0, 1}) {
        const FailingCalls failing("tcflush", EIO, 1, spared);
        EXPECT_FALSE(port.Purge(true, true));
        EXPECT_EQ(failing.Failed(), 1);
    }
    EXPECT_TRUE(port.Purge(true, true));
}

TEST_F(FailingSerialPort, ReadsAndWritesOnAfterInterruptions) {
    ASSERT_TRUE(Open());
    std::size_t written = 0;
    {
        const FailingCalls failing("write", EINTR, 3);
        EXPECT_TRUE(port.Write("abc", 3, &written));
        EXPECT_EQ(failing.Failed(), 3);
    }
    EXPECT_EQ(written, 3u);
    char buffer[4];
    std::size_t count = 9;
    {
        const FailingCalls failing("read", EINTR, 2);
        EXPECT_TRUE(port.Read(buffer, sizeof buffer, count));
        EXPECT_EQ(failing.Failed(), 2);
    }
    const FailingCalls failing("read", EIO);
    EXPECT_FALSE(port.Read(buffer, sizeof buffer, count));
    EXPECT_EQ(count, 0u);
}

class FailingFileSystem : public testing::Test {
protected:
    std::ptrdiff_t Entries() const {
        return std::distance(std::filesystem::directory_iterator(directory.Path()),
                             std::filesystem::directory_iterator());
    }

    support::TemporaryDirectory directory;
};

TEST_F(FailingFileSystem, AnInterruptedWriteIsContinued) {
    const std::string path = directory.PathOf("file");
    const FailingCalls failing("pwrite", EINTR, 2);
    EXPECT_TRUE(ReplaceWholeFile(path, "content"));
    EXPECT_EQ(failing.Failed(), 2);
    EXPECT_EQ(directory.Read("file"), "content");
}

TEST_F(FailingFileSystem, AFailedFlushOrCloseLeavesTheOldFileAndNothingElse) {
    const std::string path = directory.Write("file", "old");
    for (const char* function : {"fsync", "close"}) {
        std::string error;
        {
            const FailingCalls failing(function, EIO);
            EXPECT_FALSE(ReplaceWholeFile(path, "new", &error)) << function;
            EXPECT_EQ(failing.Failed(), 1) << function;
        }
        EXPECT_NE(error.find(std::strerror(EIO)), std::string::npos) << error;
        EXPECT_EQ(directory.Read("file"), "old") << function;
        EXPECT_EQ(Entries(), 1) << function;
    }
}

// As a crashed process of the same number may have left them.
TEST_F(FailingFileSystem, TemporaryFilesOfOthersAreLeftAlone) {
    constexpr int kLeftOver = 1000;
    const std::string path = directory.Write("file", "old");
    for (int number = 0; number < kLeftOver; ++number) {
        directory.Write("file." + std::to_string(getpid()) + "." + std::to_string(number) + ".tmp",
                        "");
    }
    EXPECT_TRUE(ReplaceWholeFile(path, "new"));
    EXPECT_EQ(directory.Read("file"), "new");
    EXPECT_EQ(Entries(), 1 + kLeftOver);
}

// Only root can give a file away, so only for root it is an error that it cannot.
TEST_F(FailingFileSystem, TheOwnerIsKeptWhereThatIsPossible) {
    const std::string path = directory.Write("file", "old");
    {
        const FailingCalls failing("fchown", EPERM);
        EXPECT_EQ(ReplaceWholeFile(path, "new"), geteuid() != 0);
        EXPECT_EQ(failing.Failed(), 1);
    }
    EXPECT_EQ(directory.Read("file"), geteuid() != 0 ? "new" : "old");
    EXPECT_EQ(Entries(), 1);
}

using FailingFileLock = FailingFileSystem;

TEST_F(FailingFileLock, IsTriedAgainAfterAnInterruption) {
    const FailingCalls failing("flock", EINTR, 2);
    FileLock lock;
    std::string error;
    EXPECT_TRUE(lock.Acquire(directory.PathOf("file"), 60000, &error)) << error;
    EXPECT_EQ(failing.Failed(), 2);
}

TEST_F(FailingFileLock, IsTriedAgainWhenItsFileCannotBeExamined) {
    for (const char* const function : {"fstat", "lstat"}) {
        const FailingCalls failing(function, EIO);
        FileLock lock;
        std::string error;
        EXPECT_TRUE(lock.Acquire(directory.PathOf("file"), 60000, &error)) << error;
        EXPECT_EQ(failing.Failed(), 1) << function;
    }
}

TEST_F(FailingFileLock, EndsAtOnceWhereFilesCannotBeLocked) {
    FileLock lock;
    std::string error;
    {
        const FailingCalls failing("flock", ENOLCK);
        EXPECT_FALSE(lock.Acquire(directory.PathOf("file"), 60000, &error));
        EXPECT_EQ(failing.Failed(), 1);
    }
    EXPECT_EQ(error, std::strerror(ENOLCK));
    EXPECT_TRUE(lock.Acquire(directory.PathOf("file"), 0));
}

using FailingMappedFile = FailingFileSystem;

TEST_F(FailingMappedFile, LeavesNoFileThatCannotBeMapped) {
    MappedFile file;
    std::string error;
    {
        const FailingCalls failing("mmap", ENOMEM);
        EXPECT_FALSE(file.Create(directory.PathOf("file"), 4096, &error));
        EXPECT_EQ(failing.Failed(), 1);
    }
    EXPECT_EQ(error, std::strerror(ENOMEM));
    EXPECT_EQ(file.Data(), nullptr);
    EXPECT_EQ(Entries(), 0);
}

TEST(FailingClock, CountsNoProcessorTime) {
    const FailingCalls failing("clock_gettime", EINVAL);
    EXPECT_EQ(ProcessCpuSeconds(), 0.0);
    EXPECT_EQ(failing.Failed(), 1);
}

TEST(FailingInterrupt, IsReportedWhenNotBothSignalsAreHandled) {
    for (const int spared : {0, 1}) {
        const FailingCalls failing("sigaction", EINVAL, 1, spared);
        EXPECT_FALSE(InstallInterruptHandler());
        EXPECT_EQ(failing.Failed(), 1);
    }
    std::signal(SIGINT, SIG_DFL);
}

TEST(FailingThread, IsNotStartedWithoutItsAttributes) {
    const Thread::Procedure procedure = [](void*) {
    };
    for (const char* function : {"pthread_attr_init", "pthread_attr_setstacksize"}) {
        const FailingCalls failing(function, ENOMEM);
        Thread thread = Thread::Start(procedure, nullptr, 1 << 20);
        EXPECT_FALSE(thread.IsJoinable()) << function;
        EXPECT_EQ(failing.Failed(), 1) << function;
    }
}

TEST(FailingProcess, IsNotStartedWithoutItsStreams) {
    struct Failure {
        const char* function;
        int spared;
    };
    ProcessStart start;
    start.program = "/bin/true";
    for (const Failure& failure :
         {Failure{"socketpair", 0}, Failure{"pipe2", 0}, Failure{"pipe2", 1}}) {
        const int lowest = dup(STDIN_FILENO);
        close(lowest);
        Process process;
        std::string error;
        {
            const FailingCalls failing(failure.function, EMFILE, 1, failure.spared);
            EXPECT_FALSE(process.Start(start, &error)) << failure.function;
            EXPECT_EQ(failing.Failed(), 1) << failure.function;
        }
        EXPECT_EQ(error, std::string("/bin/true: ") + std::strerror(EMFILE));
        const int next = dup(STDIN_FILENO);
        EXPECT_EQ(next, lowest) << "descriptors were left open";
        close(next);
    }
    start.program = "/no/such/program";
    EXPECT_FALSE(Process().Start(start));
}

TEST(FailingProcess, WritesOnAfterAnInterruption) {
    ProcessStart start;
    start.program = "/bin/cat";
    Process process;
    ASSERT_TRUE(process.Start(start));
    {
        const FailingCalls failing("send", EINTR, 2);
        EXPECT_TRUE(process.Write("text"));
        EXPECT_EQ(failing.Failed(), 2);
    }
    process.CloseInput();
    int status = -1;
    ASSERT_TRUE(process.Wait(60000, status));
    EXPECT_EQ(process.Output(), "text");
}

TEST(FailingProcess, ReadsOnAfterAnInterruption) {
    ProcessStart start;
    start.program = "/bin/echo";
    start.arguments = {"text"};
    Process process;
    const FailingCalls failing("read", EINTR, 4);
    ASSERT_TRUE(process.Start(start));
    int status = -1;
    ASSERT_TRUE(process.Wait(60000, status));
    EXPECT_EQ(failing.Failed(), 4);
    EXPECT_EQ(process.Output(), "text\n");
}

TEST(FailingProcess, HasNoOutputThatCannotBeRead) {
    ProcessStart start;
    start.program = "/bin/echo";
    start.arguments = {"text"};
    Process process;
    const FailingCalls failing("read", EIO, 2);
    ASSERT_TRUE(process.Start(start));
    int status = -1;
    ASSERT_TRUE(process.Wait(60000, status));
    EXPECT_EQ(failing.Failed(), 2);
    EXPECT_EQ(process.Output(), "");
}

TEST(FailingConsole, ReadsNothingFromABrokenInput) {
    char buffer[4] = {};
    const FailingCalls failing("read", EIO);
    EXPECT_EQ(ReadInput(buffer, sizeof buffer), 0u);
    EXPECT_EQ(failing.Failed(), 1);
}

TEST(PosixConsole, ReadsWhatTheStandardInputHas) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int former = dup(STDIN_FILENO);
    ASSERT_EQ(dup2(ends[0], STDIN_FILENO), STDIN_FILENO);
    EXPECT_FALSE(WaitForInput(0));
    ASSERT_EQ(write(ends[1], "ab", 2), 2);
    EXPECT_TRUE(WaitForInput(60000));
    char buffer[4] = {};
    EXPECT_EQ(ReadInput(buffer, sizeof buffer), 2u);
    EXPECT_EQ(std::string(buffer, 2), "ab");
    close(ends[0]);
    close(ends[1]);
    ASSERT_EQ(dup2(former, STDIN_FILENO), STDIN_FILENO);
    close(former);
}

} // namespace
} // namespace platform
