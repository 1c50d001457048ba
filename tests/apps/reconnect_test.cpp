#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/common/sdk_control.h"
#include "apps/mivora/commands.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "tests/support/environment_guard.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <thread>

namespace {

constexpr const char* kConfiguration =
    "<PxnC><camera id=\"A\" model=\"Camera A\" sensorWidth=\"64\" sensorHeight=\"64\">"
    "<feature name=\"ExposureTime\" value=\"1000\"/>"
    "<feature name=\"AcquisitionFrameRate\" value=\"100\"/></camera>"
    "<faults><script>unplug-at 10 A</script></faults></PxnC>";

// In this process, since somebody has to plug the camera in again while the command runs.
TEST(GrabCommand, GoesOnWhenTheCameraComesBack) {
    const support::EnvironmentGuard home("PYXEN_HOME", support::BuiltFile("simulator"));
    const support::TemporaryDirectory directory;
    directory.Write("PxnC.xml", kConfiguration);

    CLI::App app;
    AppOptions options;
    AddAppOptions(app, options);
    LinkedMaker linked;
    AddGrabCommand(app, options, [&]() -> IGrabberMaker& { return linked; });

    SdkControl control;
    std::string answer;
    std::atomic<bool> ended{false};
    std::thread plugger([&] {
        support::WaitUntil([&] { return ended || control.Run("plug A", answer) == 0; }, 60000);
    });
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_NO_THROW(app.parse("--config \"" + directory.PathOf("host.ini") +
                              "\" grab --frames 25 --reconnect --json"));
    ended = true;
    plugger.join();
    const std::string errors = testing::internal::GetCapturedStderr();
    const auto report = nlohmann::json::parse(testing::internal::GetCapturedStdout());
    EXPECT_EQ(report["frames"], 25) << report;
    EXPECT_EQ(report["reconnects"], 1) << report;
    EXPECT_TRUE(report["account"]["closed"]) << report;
    EXPECT_FALSE(report["cameraLost"]) << report;
    EXPECT_NE(errors.find("waiting for it"), std::string::npos) << errors;
    EXPECT_NE(errors.find("is back"), std::string::npos) << errors;
}

} // namespace
