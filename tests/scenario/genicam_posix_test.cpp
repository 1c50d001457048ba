// genicam_posix_test.cpp - the programs with a GigE Vision camera on the loopback interface
#include "platform/process.h"
#include "tests/scenario/diagonal_ramp.h"
#include "tests/scenario/program_test.h"
#include "tests/scenario/running_watch.h"
#include "tests/support/posix/fake_camera.h"
#include "tests/support/wait_until.h"

#include <cstdint>
#include <cstdio>

namespace scenario {
namespace {

constexpr std::uint32_t kLimitMs = 60000;
constexpr DiagonalRamp kPicture{512, 512, 255};

/// mivora with a camera's real protocol: the fake GigE Vision camera on the loopback interface.
class GenicamPrograms : public ProgramTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(support::WaitUntil([this] { return ListCameras().size() == 1; }, kLimitMs));
    }
    Json ListCameras() const {
        const auto result = Mivora({"--sdk", "genicam", "cameras", "--json"});
        EXPECT_EQ(result.status, 0) << result.errors;
        return Json::parse(result.output, nullptr, false);
    }
    /// The camera's name in messages: "camera 0 (Fake_1, 0x12345678)".
    std::string NameOfFirst() const {
        const Json first = ListCameras().at(0);
        char id[16];
        std::snprintf(id, sizeof id, "0x%08X", first["uniqueId"].get<std::uint32_t>());
        return "camera 0 (" + first["name"].get<std::string>() + ", " + id + ")";
    }
    support::FakeCamera camera;
};

TEST_F(GenicamPrograms, GrabAHundredWholeFrames) {
    const auto result = Mivora({"--sdk", "genicam", "grab", "--frames", "100", "--buffers", "20",
                                "-o", PathOf("images"), "--format", "raw", "--json"});
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 100);
    EXPECT_FALSE(report["cameraLost"]);
    kPicture.ExpectGrabbed(PathOf("images"), report);
}

TEST_F(GenicamPrograms, EndWithAnErrorWhenTheCameraIsUnpluggedAndServeTheNext) {
    platform::Process process;
    std::string error;
    ASSERT_TRUE(
        process.Start(support::ProgramStart(
                          "mivora", WithConfig({"--sdk", "genicam", "grab", "--frames", "0", "-o",
                                                PathOf("images"), "--format", "raw", "--json"})),
                      &error))
        << error;
    EXPECT_TRUE(support::WaitUntil(
        [this] { return platform::PathExists(PathOf("images/frame-000005.raw")); }, kLimitMs));
    camera.Kill();
    support::ProgramResult result;
    ASSERT_TRUE(process.Wait(kLimitMs, result.status));
    result.output = process.Output();
    result.errors = process.Errors();
    ExpectFailure(result, 1, {"mivora: no more frames from camera 0 (Fake"});
    const Json report = Json::parse(result.output);
    EXPECT_TRUE(report["cameraLost"]);
    EXPECT_GE(report["frames"], 5);
    EXPECT_TRUE(report["account"]["closed"]) << report;

    EXPECT_EQ(ListCameras(), Json::array());
    camera.Restart();
    ASSERT_TRUE(support::WaitUntil([this] { return ListCameras().size() == 1; }, kLimitMs));
    ExpectDone(Mivora({"--sdk", "genicam", "snap", "-o", PathOf("image.raw")}));
    EXPECT_EQ(kPicture.CountWrongPixels(directory.Read("image.raw")), 0u);
}

TEST_F(GenicamPrograms, WatchReportsThatTheCameraGoesAndComesBack) {
    const std::string name = NameOfFirst();
    RunningWatch watch(WithConfig({"--sdk", "genicam", "watch"}));
    ASSERT_TRUE(watch.Prints("watching " + name));
    camera.Kill();
    ASSERT_TRUE(watch.Prints(" camera configuration changed"));
    ASSERT_TRUE(watch.Prints(" " + name + " is gone"));
    camera.Restart();
    ASSERT_TRUE(watch.Prints(" " + name + " is there"));
    ExpectDone(watch.Interrupt());
}

TEST_F(GenicamPrograms, WatchTakesTheFirstCameraThatComes) {
    const std::string name = NameOfFirst();
    camera.Kill();
    RunningWatch watch(WithConfig({"--sdk", "genicam", "watch"}));
    ASSERT_TRUE(watch.Prints("watching; there is no camera yet"));
    camera.Restart();
    ASSERT_TRUE(watch.Prints(" " + name + " is there"));
    // It is watched like a camera that was present from the start.
    camera.Kill();
    ASSERT_TRUE(watch.Prints(" camera configuration changed"));
    ASSERT_TRUE(watch.Prints(" " + name + " is gone"));
    ExpectDone(watch.Interrupt());
}

} // namespace
} // namespace scenario
