// process_test.cpp - child processes, played by this program
#include "platform/process.h"

#include "platform/file_system.h"
#include "tests/support/environment_guard.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

constexpr std::uint32_t kLimitMs = 60000;

// Starts this program as the child; its GoogleTest options make it list tests or run a few.
ProcessStart OwnProgram(const std::vector<std::string>& arguments) {
    ProcessStart start;
    start.program = ExecutablePath();
    start.arguments = arguments;
    return start;
}

TEST(Process, ReportsStatusAndOutput) {
    Process process;
    std::string error;
    ASSERT_TRUE(process.Start(OwnProgram({"--gtest_list_tests"}), &error)) << error;
    process.CloseInput();
    int status = -1;
    ASSERT_TRUE(process.Wait(kLimitMs, status));
    EXPECT_EQ(status, 0);
    EXPECT_NE(process.Output().find("ReportsStatusAndOutput"), std::string::npos);
    EXPECT_EQ(process.Errors(), "");
}

TEST(FindProgram, LooksInTheDirectoriesOfPath) {
    const std::string programs = DirectoryOf(ExecutablePath());
    std::string name = ExecutablePath().substr(programs.size() + 1);
    name = name.substr(0, name.find(".exe"));
    const std::string separator = kPathSeparator == '/' ? ":" : ";";
    const support::TemporaryDirectory empty;
    {
        const support::EnvironmentGuard path("PATH", empty.Path() + separator + programs);
        EXPECT_EQ(FindProgram(name), ExecutablePath());
        EXPECT_EQ(FindProgram("no-such-program"), "");
    }
    const support::EnvironmentGuard path("PATH", empty.Path() + separator);
    EXPECT_EQ(FindProgram(name), "");
}

TEST(Process, PassesArgumentsUnchanged) {
    const support::TemporaryDirectory directory;
    const std::string file = directory.PathOf("with blank and 'quotes'.xml");
    // Ends in a separator and therefore names a directory.
    const std::string inside = directory.PathOf("another blank") + kPathSeparator;
    for (const std::string& output : {file, inside}) {
        Process process;
        ASSERT_TRUE(process.Start(
            OwnProgram({"--gtest_filter=Path.NoSuchTest", "--gtest_output=xml:" + output})));
        int status = -1;
        ASSERT_TRUE(process.Wait(kLimitMs, status));
    }
    EXPECT_TRUE(PathExists(file));
    EXPECT_TRUE(PathExists(inside + "platform_tests.xml"));
}

TEST(Process, SetsEnvironmentAndWorkingDirectory) {
    const support::TemporaryDirectory directory;
    ProcessStart start = OwnProgram({"--gtest_filter=Path.NoSuchTest"});
    start.workingDirectory = directory.Path();
    start.environment = {{"GTEST_OUTPUT", "xml:result.xml"}};
    Process process;
    ASSERT_TRUE(process.Start(start));
    int status = -1;
    ASSERT_TRUE(process.Wait(kLimitMs, status));
    EXPECT_TRUE(PathExists(directory.PathOf("result.xml")));
}

TEST(Process, RefusesAMissingProgram) {
    ProcessStart start;
    start.program = JoinPath(DirectoryOf(ExecutablePath()), "no_such_program");
    Process process;
    std::string error;
    EXPECT_FALSE(process.Start(start, &error));
    EXPECT_NE(error.find("no_such_program"), std::string::npos);
}

TEST(Process, IsEndedByKillAndByTheDestructor) {
    // Repeats a short test forever.
    const ProcessStart endless =
        OwnProgram({"--gtest_filter=Process.RefusesAMissingProgram", "--gtest_repeat=-1"});
    Process killed;
    ASSERT_TRUE(killed.Start(endless));
    int status = 0;
    EXPECT_FALSE(killed.Wait(1, status));
    killed.Kill();
    EXPECT_TRUE(killed.Wait(kLimitMs, status));
    EXPECT_NE(status, 0);
    Process destroyed;
    EXPECT_TRUE(destroyed.Start(endless));
}

} // namespace
} // namespace platform
