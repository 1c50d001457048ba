// snap_synchronous_test.cpp - single snaps that the caller waits for
#include "tests/module/acquisition/snap_fixture.h"

#include <algorithm>
#include <cstddef>
#include <thread>

namespace {

class SynchronousSnap : public SnapFixture {
protected:
    const std::string queue = "PxnCaptureFrameQueue(camera0, frame0, null)";
    const std::string wait = "PxnCaptureFrameWait(camera0, frame0, 4294967295)";
    const std::string startFailed = "Sending acquisition start command to camera failed";
    const std::string stopFailed = "Sending acquisition stop command to camera failed";
};

TEST_F(SynchronousSnap, TakesOneFrame) {
    for (const uint32_t mode : {3u, 4u, 5u}) {
        for (const Strategy strategy : {Strategy::kStartFirst, Strategy::kQueueFirst}) {
            Ready(2, strategy);
            sdk.Data().completeWaitsAtOnce = true;
            EXPECT_EQ(Grabber().Snap(mode), MV_OK);
            EXPECT_EQ(Calls(),
                      (Texts{Announce(0), captureStart, queue, start, wait, stop, captureEnd}));
            EXPECT_EQ(Log(), (Texts{Said("queued one buffer"), Said("PxnCaptureStart successful"),
                                    Said("started camera acquisition"), Said("snapped one frame"),
                                    Said("successfully stopped camera acquisition")}));
            EXPECT_EQ(TakeHandedOver(), (std::vector<HandedOver>{{0, 0}}));
            EXPECT_EQ(FramesReceived(), 1u);
            EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
            EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{0});
            EXPECT_EQ(sleep.Take(), std::vector<std::uint32_t>{});
            Destroy();
            sdk.Reset();
        }
    }
}

TEST_F(SynchronousSnap, CanBeRepeatedWithTheFrameStillAnnounced) {
    Ready(1);
    sdk.Data().completeWaitsAtOnce = true;
    EXPECT_EQ(Grabber().Snap(3), MV_OK);
    EXPECT_EQ(Grabber().Snap(4), MV_OK);
    EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{0});
    EXPECT_EQ(TakeHandedOver().size(), 2u);
}

TEST_F(SynchronousSnap, WaitsForTheFrameInItsMode) {
    Ready(1);
    MV_ERRCODE result = MV_REFUSED;
    std::thread snapping([&] { result = Grabber().Snap(5); });
    ASSERT_TRUE(sdk.WaitForCall(wait));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 5u);
    ASSERT_TRUE(sdk.Complete(0, PxnErrSuccess, 0x5A));
    snapping.join();
    EXPECT_EQ(result, MV_OK);
    const auto* const image = static_cast<const uint8_t*>(Grabber().GetFrameBuffer(0));
    EXPECT_EQ(image[0], 0x5A);
    EXPECT_EQ(image[640 * 480 - 1], 0x5A);
}

TEST_F(SynchronousSnap, HasCountedAndIsInItsModeWhenItHandsOver) {
    Ready(1);
    sdk.Data().completeWaitsAtOnce = true;
    uint64_t count = 0;
    uint32_t mode = 0;
    onHandOver = [&](uint64_t) {
        count = FramesReceived();
        mode = Grabber().GetAcquisitionState();
        EXPECT_EQ(sdk.Calls({stop}), Texts{});
    };
    EXPECT_EQ(Grabber().Snap(4), MV_OK);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(mode, 4u);
}

TEST_F(SynchronousSnap, HandsOverWithoutConverting) {
    Camera()["PixelFormat"].text = "Mono12p";
    Camera()["PayloadSize"].intValue = 640 * 480 * 3 / 2;
    Ready(1);
    auto* const image = static_cast<uint8_t*>(Grabber().GetFrameBuffer(0));
    constexpr std::size_t kImageSize = std::size_t{640} * 480 * 2;
    std::fill_n(image, kImageSize, uint8_t{0x5A});
    std::thread snapping([&] { EXPECT_EQ(Grabber().Snap(3), MV_OK); });
    ASSERT_TRUE(sdk.WaitForCall(wait));
    EXPECT_TRUE(sdk.Complete(0, PxnErrSuccess, 0xAB));
    snapping.join();
    EXPECT_EQ(TakeHandedOver(), (std::vector<HandedOver>{{0, 0}}));
    EXPECT_TRUE(std::all_of(image, image + kImageSize, [](uint8_t byte) { return byte == 0x5A; }));
    for (const std::string& line : Log()) {
        EXPECT_EQ(line.find("conversion"), std::string::npos);
    }
}

TEST_F(SynchronousSnap, TakesWhatCameWhateverItsStatus) {
    Ready(1);
    Grabber().Api().PxnCaptureFrameWait = [](PxnHandle, const PxnFrame* frame,
                                             uint32_t) -> PxnError {
        const_cast<PxnFrame*>(frame)->receiveStatus = PxnFrameStatusIncomplete;
        return PxnErrSuccess;
    };
    EXPECT_EQ(Grabber().Snap(3), MV_OK);
    EXPECT_EQ(FramesReceived(), 1u);
    EXPECT_EQ(TakeHandedOver(), (std::vector<HandedOver>{{0, 0}}));
    EXPECT_EQ(Log(), (Texts{Said("queued one buffer"), Said("PxnCaptureStart successful"),
                            Said("started camera acquisition"), Said("snapped one frame"),
                            Said("successfully stopped camera acquisition")}));
}

TEST_F(SynchronousSnap, FailsWhenTheFrameCannotBeAnnounced) {
    Ready(1);
    sdk.Fail("PxnFrameAnnounce", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(3), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), Texts{Announce(0)});
    EXPECT_EQ(Log(), Texts{Failed("PxnFrameAnnounce failed")});
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(SynchronousSnap, FailsWhenCaptureCannotStart) {
    Ready(1);
    sdk.Fail("PxnCaptureStart", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(4), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), captureStart, flush, revokeAll}));
    EXPECT_EQ(Log(), (Texts{Said("queued one buffer"), Failed("PxnCaptureStart failed")}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(SynchronousSnap, FailsWhenTheFrameCannotBeQueued) {
    Ready(1);
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(5), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), captureStart, queue, revokeAll}));
    EXPECT_EQ(Log(), (Texts{Said("queued one buffer"), Said("PxnCaptureStart successful"),
                            Failed("PxnCaptureQueueFrame failed")}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(SynchronousSnap, FailsWhenTheCameraCannotBeStarted) {
    Ready(1);
    sdk.FailFeature(scripted::CameraHandle(), "AcquisitionStart", "PxnFeatureCommandRun", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(3), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), captureStart, queue, start, captureEnd}));
    EXPECT_EQ(Log(), (Texts{Said("queued one buffer"), Said("PxnCaptureStart successful"),
                            Failed(startFailed)}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(SynchronousSnap, StopsTheCameraWhenTheWaitFails) {
    Ready(1);
    sdk.Fail("PxnCaptureFrameWait", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(3), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), captureStart, queue, start, wait, stop, captureEnd}));
    EXPECT_EQ(Log(),
              (Texts{Said("queued one buffer"), Said("PxnCaptureStart successful"),
                     Said("started camera acquisition"), Failed("PxnCaptureFrameWait failed"),
                     Said("successfully stopped camera acquisition")}));
    EXPECT_EQ(TakeHandedOver(), std::vector<HandedOver>{});
    EXPECT_EQ(FramesReceived(), 0u);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(SynchronousSnap, EndsTheWaitWhenTheCameraVanishes) {
    Ready(1);
    MV_ERRCODE result = MV_OK;
    std::thread snapping([&] { result = Grabber().Snap(3); });
    ASSERT_TRUE(sdk.WaitForCall(wait));
    ASSERT_TRUE(sdk.Complete(0, PxnErrNotAvailable));
    snapping.join();
    EXPECT_EQ(result, MV_ACQUISITION_FAILED);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(SynchronousSnap, SucceedsWhenOnlyTheStopFails) {
    Ready(1);
    sdk.Data().completeWaitsAtOnce = true;
    sdk.FailFeature(scripted::CameraHandle(), "AcquisitionStop", "PxnFeatureCommandRun", PxnErrIO);
    sdk.Fail("PxnCaptureEnd", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(3), MV_OK);
    const Texts log = Log();
    EXPECT_EQ(log[3], Said("snapped one frame"));
    EXPECT_EQ(log[4], Failed(stopFailed));
    EXPECT_EQ(log.size(), 5u);
    EXPECT_EQ(sdk.Calls({"PxnCaptureEnd"}), Texts{captureEnd});
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(SynchronousSnap, KeepsTheCountUntilItsFrameIsThere) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(sdk.Deliver(0));
    }
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    std::thread snapping([&] { EXPECT_EQ(Grabber().Snap(3), MV_OK); });
    ASSERT_TRUE(sdk.WaitForCall(wait));
    EXPECT_EQ(FramesReceived(), 3u);
    ASSERT_TRUE(sdk.Complete(0));
    snapping.join();
    EXPECT_EQ(FramesReceived(), 1u);
}

TEST_F(SynchronousSnap, WorksWithoutASink) {
    WithoutSink();
    Ready(1);
    sdk.Data().completeWaitsAtOnce = true;
    EXPECT_EQ(Grabber().Snap(3), MV_OK);
    EXPECT_EQ(TakeHandedOver(), (std::vector<HandedOver>{{0, 0}}));
}

TEST_F(SynchronousSnap, MayBeStoppedByTheReceiverToNoEffect) {
    Ready(1);
    sdk.Data().completeWaitsAtOnce = true;
    onHandOver = [&](uint64_t) {
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    };
    EXPECT_EQ(Grabber().Snap(3), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCaptureQueueFlush", "PxnFrameRevokeAll"}), Texts{});
}

} // namespace
