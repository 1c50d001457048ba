// growth_test.cpp - what a process holds after cameras have vanished again and again
#include "platform/environment.h"
#include "platform/sleep.h"
#include "tests/load/process_resources.h"
#include "tests/pxnc/genicam/camera_fixture.h"
#include "tests/pxnc/genicam/frame_set.h"
#include "tests/support/wait_until.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace genicam_test {
namespace {

/// MIVORA_VANISH_ROUNDS makes a longer run of it.
unsigned VanishRounds() {
    const std::string rounds = platform::GetEnvironment("MIVORA_VANISH_ROUNDS");
    return rounds.empty() ? 1 : static_cast<unsigned>(std::strtoul(rounds.c_str(), nullptr, 10));
}

int Difference(std::uint64_t now, std::uint64_t before) {
    return static_cast<int>(static_cast<std::int64_t>(now) - static_cast<std::int64_t>(before));
}

class GrowthTest : public CameraFixture {
protected:
    void SetUp() override {}

    /// The camera vanishes while it sends: unplugged, or silent until its control is lost.
    void LoseTheCamera(bool isUnplugged) {
        Open();
        FrameSet frames(camera, 4, 512 * 512);
        frames.onFrame = [&](PxnFrame* frame) {
            frames.Queue(static_cast<std::size_t>(frame - frames.At(0)));
        };
        frames.Announce();
        ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
        frames.Queue();
        frames.StartAcquisition();
        ASSERT_TRUE(frames.WaitForCount(3));
        isUnplugged ? Fake().Kill() : Fake().Freeze();
        PxnCameraInfo info = {};
        EXPECT_TRUE(support::WaitUntil(
            [&] {
                return Sdk().CameraInfoQueryByHandle(camera, &info, sizeof info) == PxnErrBadHandle;
            },
            20000));
        isUnplugged ? Fake().Restart() : Fake().Thaw();
        Close(PxnErrBadHandle);
        // The fake camera looks ten times a second whether it is still controlled, and would go on
        // sending to the former stream if it was controlled again in between.
        platform::SleepMs(500);
        ASSERT_TRUE(WaitUntilListed());
    }
};

TEST_F(GrowthTest, NothingIsLeftOfACameraThatVanished) {
    LoseTheCamera(true); // what is made once and kept
    const ProcessResources before = ProcessResources::Now();
    const unsigned rounds = VanishRounds();
    for (unsigned round = 0; round < rounds; ++round) {
        LoseTheCamera(round % 2 != 0);
    }
    const ProcessResources after = ProcessResources::Now();
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_EQ(after.threads, before.threads);
    std::printf("%u times: threads %+d, handles %+d, memory %+.1f MB\n", rounds,
                Difference(after.threads, before.threads),
                Difference(after.handles, before.handles),
                Difference(after.bytes, before.bytes) / 1e6);
#if !defined(MIVORA_SANITIZED) // AddressSanitizer keeps what is freed for a while
    EXPECT_LT(after.bytes, before.bytes + 1024 * 1024); // a round has 2 MiB of frames
#endif
}

} // namespace
} // namespace genicam_test
