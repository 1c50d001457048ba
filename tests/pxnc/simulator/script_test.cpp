// script_test.cpp - lines of a script that wait for the startup
#include "pxnc.h"
#include "pxnc/simulator/control.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

class WaitingLinesTest : public testing::Test {
protected:
    void TearDown() override { Run("clear"); }

    static std::string Run(const std::string& command) {
        char answer[2000] = "";
        PxnControl(command.c_str(), answer, sizeof answer);
        return answer;
    }
    std::string RunFile(const std::string& lines) const {
        directory.Write("script.txt", lines);
        return Run("script " + directory.PathOf("script.txt"));
    }
    static std::uint32_t Cameras() {
        std::uint32_t found = 0;
        EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), 0);
        return found;
    }

    support::TemporaryDirectory directory;
};

TEST_F(WaitingLinesTest, RunInOrderRightAfterTheStartup) {
    EXPECT_EQ(RunFile("unplug DEV_000F31024A10\nfail PxnCamerasList 1 -24\nclock stop\n"
                      "after 1000 plug DEV_000F31024A10\n"),
              "ok");
    ASSERT_EQ(PxnStartup(nullptr), 0);
    std::uint32_t found = 0;
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), PxnErrBusy)
        << "a line that needs no started SDK has run before";
    EXPECT_EQ(Cameras(), 2u);
    Run("clock advance 999");
    EXPECT_EQ(Cameras(), 2u);
    Run("clock advance 1");
    EXPECT_EQ(Cameras(), 3u);
    PxnShutdown();
    ASSERT_EQ(PxnStartup(nullptr), 0);
    EXPECT_EQ(Cameras(), 3u) << "they run once";
    PxnShutdown();
}

TEST_F(WaitingLinesTest, FailTheStartupWhenTheyAreRefused) {
    EXPECT_EQ(RunFile("# nobody\nunplug nobody\nunplug DEV_000F31024A10\n"), "ok");
    testing::internal::CaptureStderr();
    EXPECT_EQ(PxnStartup(nullptr), PxnErrNotFound);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "PxnC: " + directory.PathOf("script.txt") + ":2: no camera \"nobody\"\n");
    PxnShutdown();
    ASSERT_EQ(PxnStartup(nullptr), 0);
    EXPECT_EQ(Cameras(), 3u);
    PxnShutdown();
}

TEST_F(WaitingLinesTest, AreForgottenByClear) {
    RunFile("unplug DEV_000F31024A10\n");
    Run("clear");
    ASSERT_EQ(PxnStartup(nullptr), 0);
    EXPECT_EQ(Cameras(), 3u);
    PxnShutdown();
}

TEST_F(WaitingLinesTest, AreOnlyThoseThatNeedAStartedSdk) {
    EXPECT_EQ(RunFile("unplug DEV_000F31024A10\nfly\n"),
              directory.PathOf("script.txt") + ":2: no command \"fly\"; try help");
    EXPECT_EQ(Run("unplug DEV_000F31024A10"), "the SDK is not started") << "a line by itself";
}

} // namespace
