// watch_command_test.cpp - "watch" while the test drives clock and cameras
#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/common/sdk_control.h"
#include "apps/mivora/commands.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "tests/support/environment_guard.h"
#include "tests/support/manual_clock.h"
#include "tests/support/no_settling.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <thread>

namespace {

constexpr std::uint64_t kWatchedMs = 3600000;
constexpr unsigned kPatienceMs = 60000;

/// The command in this process, so that its clock is the test's. While it opens or looks for a
/// camera it does not read the clock; while it waits it does so all the time.
class WatchCommand : public testing::Test {
protected:
    ~WatchCommand() override { Sdk("clear"); }

    /// Runs the command while `drive` runs on a thread of its own, and returns its events without
    /// their times. The first line goes to `firstLine`.
    std::string Watch(const std::string& cameraAttributes, const std::function<void()>& drive) {
        directory.Write("PxnC.xml", "<PxnC><camera id=\"A\" model=\"Camera A\"" + cameraAttributes +
                                        "/></PxnC>");
        Sdk("clear"); // loads the library
        CommandLine program("", "mivora");
        AppOptions options;
        AddAppOptions(program, options);
        LinkedMaker linked;
        AddWatchCommand(program, options, [&]() -> IGrabberMaker& { return linked; });
        testing::internal::CaptureStdout();
        std::thread driver([&] {
            drive();
            clock.Advance(kWatchedMs);
        });
        std::string words[] = {"mivora", "--config", directory.PathOf("host.ini"),
                               "watch",  "--for",    std::to_string(kWatchedMs)};
        char* arguments[std::size(words)];
        std::transform(std::begin(words), std::end(words), arguments,
                       [](std::string& word) { return word.data(); });
        EXPECT_EQ(program.Run(static_cast<int>(std::size(words)), arguments), 0);
        driver.join();
        const std::string output = testing::internal::GetCapturedStdout();
        const std::size_t firstEnd = output.find('\n') + 1;
        firstLine = output.substr(0, firstEnd);
        std::string events;
        for (std::size_t at = firstEnd; at < output.size();) {
            const std::size_t end = output.find('\n', at);
            events += output.substr(at + 11, end - at - 11) + "\n";
            at = end + 1;
        }
        return events;
    }

    /// Waits until so many cameras are open and the command waits for the next event.
    void WaitForOpenCameras(std::uint64_t count) {
        EXPECT_TRUE(support::WaitUntil([&] { return Count("openCameras") == count; }, kPatienceMs));
        EXPECT_TRUE(WaitsOn());
    }
    /// True when the command reads the clock again and again.
    bool WaitsOn() const {
        const std::uint64_t before = clock.Readings();
        return support::WaitUntil([&] { return clock.Readings() > before + 3; }, kPatienceMs);
    }
    /// One number of the simulator's accounting; nothing before it is started.
    std::optional<std::uint64_t> Count(const std::string& key) {
        const auto status = nlohmann::json::parse(Sdk("status"), nullptr, false);
        return status.is_object() ? status[key].get<std::uint64_t>()
                                  : std::optional<std::uint64_t>();
    }
    /// The answer, or an empty text when the line is refused.
    std::string Sdk(const std::string& line) {
        std::string answer;
        return control.Run(line, answer) == 0 ? answer : std::string();
    }

    support::ManualClock clock;
    std::string firstLine;

private:
    const support::NoSettling noSettling;
    const support::EnvironmentGuard home{"PYXEN_HOME", support::BuiltFile("simulator")};
    const support::TemporaryDirectory directory;
    SdkControl control;
};

TEST_F(WatchCommand, LearnsFromEventsThatTheCameraGoesAndComesBack) {
    // The clock stands, so that no look for the camera is due in between.
    const std::string events = Watch("", [this] {
        WaitForOpenCameras(1);
        EXPECT_EQ(Sdk("unplug A"), "ok");
        WaitForOpenCameras(0);
        EXPECT_EQ(Sdk("plug A"), "ok");
        WaitForOpenCameras(1);
    });
    ASSERT_EQ(firstLine.find("watching camera 0 (Camera A"), 0u);
    const std::string camera = firstLine.substr(9, firstLine.size() - 10);
    EXPECT_EQ(events, "camera configuration changed\n" + camera +
                          " is gone\ncamera configuration changed\n" + camera + " is there\n");
}

TEST_F(WatchCommand, LooksEverySecondForACameraThatIsNotThere) {
    const std::string events = Watch(" plugged=\"false\"", [this] {
        WaitForOpenCameras(0);
        EXPECT_EQ(Sdk("plug A"), "ok");
        EXPECT_EQ(Sdk("drain"), "ok");
        const auto before = Count("calls");
        clock.Advance(999);
        EXPECT_TRUE(WaitsOn());
        EXPECT_EQ(Count("calls"), before) << "a look before its time";
        clock.Advance(1);
        WaitForOpenCameras(1);
    });
    EXPECT_EQ(firstLine, "watching; there is no camera yet\n");
    EXPECT_EQ(events.find("camera 0 (Camera A"), 0u) << events;
    EXPECT_NE(events.find(") is there\n"), std::string::npos) << events;
}

} // namespace
