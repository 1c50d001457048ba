// grab_command_test.cpp - tests of the command "grab" when the camera is disconnected repeatedly
#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/common/sdk_control.h"
#include "apps/mivora/commands.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "tests/support/environment_guard.h"
#include "tests/support/no_settling.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int kTimes = 10;

/// A camera that disconnects in each of its first ten runs.
std::string Configuration() {
    std::string text = "<PxnC><camera id=\"A\" model=\"Camera A\" sensorWidth=\"64\" "
                       "sensorHeight=\"64\"><feature name=\"ExposureTime\" value=\"1000\"/>"
                       "<feature name=\"AcquisitionFrameRate\" value=\"100\"/></camera>"
                       "<faults><script>\n";
    for (int time = 0; time < kTimes; ++time) {
        // At a frame number that the runs before did not reach.
        text += "unplug-at " + std::to_string(10 + time) + " A\n";
    }
    return text + "</script></faults></PxnC>";
}

int CountOf(const std::string& text, const std::string& part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

// In this process, because the camera must be connected again while the command runs.
TEST(GrabCommand, GoesOnEachOfTenTimesThatTheCameraComesBack) {
    const support::NoSettling noSettling;
    const support::EnvironmentGuard home("PYXEN_HOME", support::BuiltFile("simulator"));
    const support::TemporaryDirectory directory;
    directory.Write("PxnC.xml", Configuration());

    CommandLine program("", "mivora");
    AppOptions options;
    AddAppOptions(program, options);
    LinkedMaker linked;
    AddGrabCommand(program, options, [&]() -> IGrabberMaker& { return linked; });

    SdkControl control;
    std::string answer;
    std::atomic<bool> ended{false};
    std::thread plugger([&] {
        for (int time = 0; time < kTimes && !ended; ++time) {
            support::WaitUntil([&] { return ended || control.Run("plug A", answer) == 0; }, 60000);
        }
    });
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::string words[] = {"mivora",      "--config", directory.PathOf("host.ini"),
                           "grab",        "--frames", "165",
                           "--reconnect", "--json"};
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    EXPECT_EQ(program.Run(static_cast<int>(arguments.size()), arguments.data()), 0);
    ended = true;
    plugger.join();
    const std::string errors = testing::internal::GetCapturedStderr();
    const auto report = nlohmann::json::parse(testing::internal::GetCapturedStdout());
    // Up to 10 + 11 + ... + 19 = 145 frames arrive before the camera stays connected.
    EXPECT_EQ(report["frames"], 165) << report;
    EXPECT_EQ(report["reconnects"], kTimes) << report;
    EXPECT_TRUE(report["account"]["closed"]) << report;
    EXPECT_GE(report["account"]["sdk"]["announced"], 8 * (kTimes + 1)) << "in every run anew";
    EXPECT_FALSE(report["cameraLost"]) << report;
    EXPECT_EQ(CountOf(errors, "mivora: no frame from camera 0 (Camera A, "), kTimes) << errors;
    EXPECT_EQ(CountOf(errors, "waiting for it\n"), kTimes) << errors;
    EXPECT_EQ(CountOf(errors, " is back\n"), kTimes) << errors;
}

} // namespace
