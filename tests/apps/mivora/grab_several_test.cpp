// grab_several_test.cpp - tests of several cameras that are started by a trigger
#include "apps/mivora/grab_several.h"

#include "apps/common/command_line.h"
#include "apps/common/module_maker.h"
#include "apps/common/sdk_control.h"
#include "apps/mivora/commands.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "tests/support/environment_guard.h"
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

constexpr const char* kTriggeredCameras =
    "<PxnC><camera id=\"A\" sensorWidth=\"64\" sensorHeight=\"64\"/>"
    "<camera id=\"B\" sensorWidth=\"64\" sensorHeight=\"64\"/></PxnC>";
constexpr std::uint64_t kQueuedByBoth = 16;
constexpr std::uint64_t kLongerThanTheTimeout = 500000000;

// In this process, because the cameras are triggered while the command runs.
TEST(GrabSeveral, WaitsForTheTriggerHoweverLongThatTakes) {
    const support::EnvironmentGuard home("PYXEN_HOME", support::BuiltFile("simulator"));
    const support::TemporaryDirectory directory;
    directory.Write("PxnC.xml", kTriggeredCameras);

    CommandLine program("", "mivora");
    AppOptions options;
    AddAppOptions(program, options, CameraLimit::kSeveral);
    ModuleMaker modules;
    modules.SetPath(support::BuiltFile(platform::LibraryFileName("MivoraKVNPyxen")));
    AddGrabCommand(program, options, [&]() -> IGrabberMaker& { return modules; });

    SdkControl control;
    std::atomic<bool> ended{false};
    std::thread trigger([&] {
        support::WaitUntil(
            [&] {
                const auto counts = control.Counts();
                return ended || (counts && counts->queued == kQueuedByBoth);
            },
            60000);
        const std::uint64_t armed = platform::MonotonicNanoseconds();
        support::WaitUntil(
            [&] { return platform::MonotonicNanoseconds() - armed > kLongerThanTheTimeout; });
        std::string answer;
        for (bool isA = true; !ended; isA = !isA) {
            control.Run(isA ? "trigger A" : "trigger B", answer);
        }
    });
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::string words[] = {"mivora",
                           "--config",
                           directory.PathOf("host.ini"),
                           "--camera",
                           "A",
                           "--camera",
                           "B",
                           "grab",
                           "--frames",
                           "20",
                           "--json",
                           "--start",
                           "trigger",
                           "--set",
                           "Camera/TriggerMode=On",
                           "--set",
                           "Camera/TriggerSource=Line0",
                           "--timeout",
                           "250"};
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    EXPECT_EQ(program.Run(static_cast<int>(arguments.size()), arguments.data()), 0);
    ended = true;
    trigger.join();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "mivora: waiting for the trigger\n");
    const auto report = nlohmann::json::parse(testing::internal::GetCapturedStdout());
    EXPECT_EQ(report["frames"], 40) << report;
    EXPECT_EQ(report["start"]["by"], "trigger") << report;
    EXPECT_TRUE(report["account"]["closed"]) << report;
}

} // namespace
