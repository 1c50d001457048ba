// genicam_wire_posix_test.cpp - a GigE Vision camera whose network fails
#include "platform/clock.h"
#include "platform/sleep.h"
#include "tests/scenario/genicam_programs.h"

#include <atomic>
#include <thread>

namespace scenario {
namespace {

/// The fake camera stops, loses packets, replies late; and several programs want it.
class GenicamWire : public GenicamPrograms {
protected:
    /// Freezes the camera for that long while the program takes frames.
    void Interrupt(std::uint32_t milliseconds) {
        ASSERT_TRUE(WaitForImage(5));
        camera.Freeze();
        platform::SleepMs(milliseconds);
        camera.Thaw();
    }
    /// The camera anew, losing that many of a thousand packets. It sends none again.
    void LosePackets(unsigned perThousand) {
        camera.Restart(perThousand);
        ASSERT_TRUE(WaitUntilListed());
    }
    /// Grabs so many frames; every image that counts as taken is whole. Returns how many frames
    /// were not.
    unsigned CountIncomplete(unsigned frames, const DiagonalRamp& picture) {
        const auto result =
            support::RunProgram("mivora", GrabArguments({"--frames", std::to_string(frames)}));
        ExpectRecorded(result);
        const Json report = Json::parse(result.output);
        EXPECT_EQ(report["frames"], frames);
        EXPECT_EQ(report["errors"], report["account"]["incomplete"]);
        picture.ExpectGrabbed(PathOf("images"), report);
        return report["errors"];
    }
};

TEST_F(GenicamWire, FramesGoOnAfterTwoSecondsWithoutTheCamera) {
    platform::Process process;
    Start(process, GrabArguments({"--frames", "60"}));
    Interrupt(2000);
    const support::ProgramResult result = End(process);
    ExpectRecorded(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 60);
    EXPECT_FALSE(report["cameraLost"]);
    kPicture.ExpectGrabbed(PathOf("images"), report);
}

TEST_F(GenicamWire, TenSecondsWithoutTheCameraEndTheGrabAndTheNextWorks) {
    platform::Process process;
    Start(process, GrabArguments({"--frames", "0"}));
    Interrupt(10000);
    const support::ProgramResult result = End(process);
    ExpectFailure(result, 1, {"\"message\":\"no more frames from camera 0 (Fake"});
    const Json report = Json::parse(result.output);
    EXPECT_TRUE(report["cameraLost"]);
    EXPECT_TRUE(report["account"]["closed"]) << report;
    ASSERT_TRUE(WaitUntilListed());
    ExpectDone(Mivora({"--sdk", "genicam", "snap", "-o", PathOf("image.raw")}));
    EXPECT_EQ(kPicture.CountWrongPixels(directory.Read("image.raw")), 0u);
}

TEST_F(GenicamWire, AGrabThatReconnectsGoesOnAfterTenSecondsWithoutTheCamera) {
    platform::Process process;
    Start(process, GrabArguments({"--frames", "100", "--reconnect"}));
    Interrupt(10000);
    const support::ProgramResult result = End(process);
    EXPECT_EQ(result.status, 3) << result.errors;
    EXPECT_PRED2(Contains, result.errors, "gap of unknown length");
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 100);
    EXPECT_GE(report["reconnects"], 1);
}

TEST_F(GenicamWire, LostPacketsDamageNoImage) {
    EXPECT_EQ(CountIncomplete(10, kPicture), 0u);
    LosePackets(1); // about 190 packets a frame
    CountIncomplete(25, kPicture);
    LosePackets(10);
    EXPECT_GT(CountIncomplete(5, kPicture), 0u);
    LosePackets(50);
    for (const char* side : {"Width", "Height"}) {
        ExpectDone(Mivora({"--sdk", "genicam", "set", std::string("Camera/") + side + "=64"}));
    }
    EXPECT_GT(CountIncomplete(40, {64, 64, 255}), 0u); // 5 packets a frame
}

TEST_F(GenicamWire, AGrabWithoutAnyWholeFrameEndsAndCountsThem) {
    LosePackets(500);
    const auto result =
        support::RunProgram("mivora", GrabArguments({"--frames", "20", "--timeout", "2000"}));
    ExpectFailure(result, 1, {"\"message\":\"no more frames from camera 0 (Fake"});
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 0);
    EXPECT_EQ(report["account"]["written"], 0);
    EXPECT_GT(report["errors"], 0);
    EXPECT_TRUE(report["account"]["closed"]) << report;
}

TEST_F(GenicamWire, LateRepliesDelayButBreakNothing) {
    std::atomic<bool> isOver{false};
    platform::Process process;
    Start(process, GrabArguments({"--frames", "25"}));
    std::thread late([&] {
        while (!isOver) {
            camera.Freeze();
            platform::SleepMs(300);
            camera.Thaw();
            platform::SleepMs(100);
        }
    });
    const support::ProgramResult result = End(process);
    isOver = true;
    late.join();
    ExpectRecorded(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 25);
    kPicture.ExpectGrabbed(PathOf("images"), report);
}

TEST_F(GenicamWire, ASecondHostIsRefusedAndDisturbsNothing) {
    platform::Process process;
    Start(process, GrabArguments({"--frames", "60"}));
    ASSERT_TRUE(WaitForImage(5));
    ExpectFailure(Mivora({"--sdk", "genicam", "snap", "-o", PathOf("image.raw")}), 1,
                  {"OpenActCamera"});
    const support::ProgramResult result = End(process);
    ExpectRecorded(result);
    kPicture.ExpectGrabbed(PathOf("images"), Json::parse(result.output));
}

TEST_F(GenicamWire, ACameraOfAKilledProgramIsHadAgainWithinItsHeartbeat) {
    platform::Process process;
    Start(process, GrabArguments({"--frames", "0"}));
    ASSERT_TRUE(WaitForImage(5));
    process.Kill();
    const std::uint64_t killed = platform::MonotonicNanoseconds();
    std::uint64_t begun = killed;
    std::uint64_t refused = killed;
    const auto isHad = [&] {
        EXPECT_EQ(ListCameras().size(), 1u); // it is never gone
        refused = begun;
        begun = platform::MonotonicNanoseconds();
        return Mivora({"--sdk", "genicam", "snap", "-o", PathOf("image.raw")}).status == 0;
    };
    EXPECT_TRUE(support::WaitUntil(isHad, kLimitMs));
    // The heartbeat has 3 s, and the camera looks for it now and then.
    EXPECT_LT((refused - killed) / 1000000, 4500u);
    EXPECT_EQ(kPicture.CountWrongPixels(directory.Read("image.raw")), 0u);
}

} // namespace
} // namespace scenario
