// interrupt_posix_test.cpp - commands interrupted by the user
#include "platform/process.h"
#include "tests/scenario/program_test.h"
#include "tests/support/wait_until.h"

namespace scenario {
namespace {

class Interrupted : public ProgramTest {
protected:
    /// Runs mivora until `isReady` returns true, interrupts it and waits until it ends.
    template <typename Predicate>
    support::ProgramResult InterruptWhen(const Arguments& arguments, Predicate isReady) {
        platform::Process process;
        support::ProgramResult result;
        std::string error;
        EXPECT_TRUE(process.Start(support::ProgramStart("mivora", WithConfig(arguments)), &error))
            << error;
        EXPECT_TRUE(support::WaitUntil(isReady, 60000));
        EXPECT_TRUE(process.Interrupt());
        result.ended = process.Wait(60000, result.status);
        EXPECT_TRUE(result.ended);
        result.output = process.Output();
        result.errors = process.Errors();
        return result;
    }
};

TEST_F(Interrupted, GrabEndsCleanlyWithItsReport) {
    UseCamera();
    const std::string images = PathOf("images");
    const auto result = InterruptWhen(
        {"--sdk", "simulator", "grab", "--frames", "0", "-o", images, "--format", "raw", "--json"},
        [&] { return platform::PathExists(platform::JoinPath(images, "frame-000003.raw")); });
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_TRUE(report["interrupted"]);
    EXPECT_FALSE(report["cameraLost"]);
    EXPECT_GE(report["frames"], 3);
    EXPECT_EQ(report["account"]["written"], report["frames"]);
    EXPECT_TRUE(report["account"]["closed"]) << report;
}

TEST_F(Interrupted, GrabThatWasToTakeMoreReportsHowFarItCame) {
    UseCamera();
    const std::string images = PathOf("images");
    const auto result = InterruptWhen(
        {"--sdk", "simulator", "grab", "--frames", "1000000", "-o", images, "--format", "raw",
         "--json"},
        [&] { return platform::PathExists(platform::JoinPath(images, "frame-000003.raw")); });
    const Json report = Json::parse(result.output);
    EXPECT_TRUE(report["interrupted"]);
    EXPECT_TRUE(report["account"]["closed"]) << report;
    ExpectFailure(
        result, 1,
        {"\"message\":\"interrupted after " + report["frames"].dump() + " of 1000000 frames"});
}

TEST_F(Interrupted, GrabFromSeveralCamerasStopsThemAll) {
    UseCamera("", "<camera id=\"B\" sensorWidth=\"64\" sensorHeight=\"64\"/>\n");
    const std::string run = PathOf("run");
    const auto result =
        InterruptWhen({"--sdk", "simulator", "--camera", "A", "--camera", "B", "grab", "--frames",
                       "0", "-o", run, "--format", "raw", "--buffers", "100", "--json"},
                      [&] {
                          return platform::PathExists(run + "/camera-A/frame-000003.raw") &&
                                 platform::PathExists(run + "/camera-B/frame-000003.raw");
                      });
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_TRUE(report["interrupted"]);
    EXPECT_TRUE(report["account"]["closed"]) << report;
    EXPECT_EQ(report["recording"]["recorded"], report["frames"]) << report;
    EXPECT_TRUE(Json::parse(directory.Read("run/recording.json"))["complete"]);
}

TEST_F(Interrupted, SnapReportsThatNoFrameCame) {
    UseCamera("", Faults("frame-random 1 100 drop"));
    const std::string log = PathOf("log");
    const auto result = InterruptWhen(
        {"--sdk", "simulator", "--log", log, "snap", "--timeout", "600000", "-o", PathOf("a.raw")},
        [&] {
            std::string text;
            return platform::ReadWholeFile(log, text) &&
                   Contains(text, "CMivoraKVNPyxenClass::Snap: ");
        });
    ExpectFailure(result, 1, {"mivora: interrupted before a frame came from camera 0 (Camera A"});
    EXPECT_FALSE(platform::PathExists(PathOf("a.raw")));
}

TEST_F(Interrupted, WaitingForACameraEnds) {
    UseCamera("", Faults("unplug-at 5 A"));
    const std::string log = PathOf("log");
    const auto result = InterruptWhen(
        {"--sdk", "simulator", "--log", log, "grab", "--frames", "0", "--reconnect", "--json"},
        [&] {
            std::string text;
            return platform::ReadWholeFile(log, text) &&
                   Contains(text, "CMivoraKVNPyxenClass::CloseActCamera");
        });
    EXPECT_EQ(result.status, 0);
    EXPECT_PRED2(Contains, result.errors, "waiting for it");
    EXPECT_TRUE(Json::parse(result.output)["interrupted"]);
}

TEST_F(Interrupted, WatchEnds) {
    UseCamera();
    const std::string log = PathOf("log");
    const auto result = InterruptWhen({"--sdk", "simulator", "--log", log, "watch"}, [&] {
        std::string text;
        return platform::ReadWholeFile(log, text) && Contains(text, "Using snap start strategy");
    });
    ExpectDone(result);
    EXPECT_PRED2(Contains, result.output, "watching camera 0");
}

} // namespace
} // namespace scenario
