// snap_asynchronous_test.cpp - single snaps that end on a thread of their own
#include "tests/module/acquisition/snap_fixture.h"

#include <atomic>
#include <thread>

namespace {

class AsynchronousSnap : public SnapFixture {
protected:
    /// Waits until the cleanup thread has ended its work, pause included.
    bool WaitUntilIdle() {
        return support::WaitUntil([&] { return Grabber().GetAcquisitionState() == 0; });
    }

    static std::string CleanedUp(const std::string& text) {
        return "1 CMivoraKVNPyxenClass::SingleSnapCleanupThreadProc: " + text;
    }

    const std::string finished =
        "1 CMivoraKVNPyxenClass::FrameCallback: An asynchronous single snap has finished";
    const Texts cleaningUp{stop, captureEnd, revokeAll};
};

TEST_F(AsynchronousSnap, StartsCaptureAndThenQueuesOneBuffer) {
    Ready(3);
    EXPECT_EQ(Grabber().Snap(2), MV_OK);
    EXPECT_EQ(Calls(), (Texts{Announce(0), captureStart, Queue(0), start}));
    EXPECT_EQ(Log(), (Texts{Said("Announced buffer 0"), Said("PxnCaptureStart successful"),
                            Said("queued one buffer"), Said("started camera acquisition")}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 2u);
}

TEST_F(AsynchronousSnap, QueuesOneBufferAndThenStartsCapture) {
    Ready(3, Strategy::kQueueFirst);
    EXPECT_EQ(Grabber().Snap(2), MV_OK);
    EXPECT_EQ(Calls(), (Texts{Announce(0), Queue(0), captureStart, start}));
    EXPECT_EQ(Log(),
              (Texts{Said("Announced buffer 0"), Said("queued one buffer"),
                     Said("PxnCaptureStart successful"), Said("started camera acquisition")}));
}

TEST_F(AsynchronousSnap, FailsWhenTheFrameCannotBeAnnounced) {
    Ready(1);
    sdk.Fail("PxnFrameAnnounce", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(2), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), Texts{Announce(0)});
    EXPECT_EQ(Log(), Texts{Failed("PxnFrameAnnounce failed")});
    EXPECT_EQ(Grabber().GetAcquisitionState(), 2u);
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(AsynchronousSnap, FailsWhenTheFrameCannotBeQueuedAfterTheStart) {
    Ready(1);
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(2), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), captureStart, Queue(0), captureEnd, revokeAll}));
    EXPECT_EQ(Log(), (Texts{Said("Announced buffer 0"), Said("PxnCaptureStart successful"),
                            Failed("PxnCaptureFrameQueue failed")}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 2u);
}

TEST_F(AsynchronousSnap, FailsWhenTheFrameCannotBeQueuedBeforeTheStart) {
    Ready(1, Strategy::kQueueFirst);
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(2), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), Queue(0), revokeAll}));
    EXPECT_EQ(Log(), (Texts{Said("Announced buffer 0"), Failed("PxnCaptureFrameQueue failed")}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 2u);
}

TEST_F(AsynchronousSnap, FailsWhenCaptureCannotStart) {
    for (const Strategy strategy : {Strategy::kStartFirst, Strategy::kQueueFirst}) {
        Ready(1, strategy);
        sdk.Fail("PxnCaptureStart", PxnErrIO);
        EXPECT_EQ(Grabber().Snap(2), MV_ACQUISITION_FAILED);
        const Texts queued = strategy == Strategy::kQueueFirst ? Texts{Queue(0)} : Texts{};
        EXPECT_EQ(Calls(), (Texts{Announce(0)} + queued + Texts{captureStart, flush, revokeAll}));
        EXPECT_EQ(Log().back(), Failed("PxnCaptureStart failed"));
        EXPECT_EQ(Grabber().GetAcquisitionState(), 2u);
        Destroy();
        sdk.Reset();
    }
}

TEST_F(AsynchronousSnap, FailsWhenTheCameraCannotBeStarted) {
    Ready(1);
    sdk.FailFeature(scripted::CameraHandle(), "AcquisitionStart", "PxnFeatureCommandRun", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(2), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(),
              (Texts{Announce(0), captureStart, Queue(0), start, captureEnd, flush, revokeAll}));
    EXPECT_EQ(Log().back(), Failed("Sending acquisition start command to camera failed"));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 2u);
}

TEST_F(AsynchronousSnap, EndsOnItsCleanupThread) {
    Ready(2);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    Forget();
    ASSERT_TRUE(sdk.Deliver(0, 0, 17, 0x33));
    EXPECT_EQ(TakeHandedOver(), (std::vector<HandedOver>{{0, 1}}));
    ASSERT_TRUE(WaitUntilIdle());
    EXPECT_EQ(Calls(), cleaningUp);
    EXPECT_EQ(
        Log(),
        (Texts{
            "1 CMivoraKVNPyxenClass::FrameCallback: Successfully grabbed frame: buffer idx = 0, total count = 1. [RcvSize = 307200, 640x480, PixelFmt = 01080001, UniqueId = 17]",
            finished,
            CleanedUp("successfully stopped camera acquisition"),
            CleanedUp("PxnCaptureEnd successful"),
            CleanedUp("PxnRevokeAll successful"),
        }));
    EXPECT_EQ(sleep.Take(), std::vector<std::uint32_t>{1000});
    EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
    EXPECT_EQ(FramesReceived(), 1u);
}

TEST_F(AsynchronousSnap, ReportsWhatFailsInItsCleanup) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    sdk.FailFeature(scripted::CameraHandle(), "AcquisitionStop", "PxnFeatureCommandRun", PxnErrIO);
    sdk.Fail("PxnCaptureEnd", PxnErrIO);
    sdk.Fail("PxnFrameRevokeAll", PxnErrIO);
    Forget();
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(WaitUntilIdle());
    EXPECT_EQ(Calls(), cleaningUp);
    const Texts log = Log();
    EXPECT_EQ(
        Texts(log.begin() + 2, log.end()),
        (Texts{
            "0 CMivoraKVNPyxenClass::SingleSnapCleanupThreadProc: Sending acquisition stop command to camera failed: Low level IO error in transport layer",
            "0 CMivoraKVNPyxenClass::FrameCallback: Calling PxnCaptureEnd failed: Low level IO error in transport layer",
            "0 CMivoraKVNPyxenClass::SingleSnapCleanupThreadProc: Calling PxnRevokeAll failed: Low level IO error in transport layer",
        }));
}

TEST_F(AsynchronousSnap, EndsWithABadFrameAsWell) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusIncomplete));
    ASSERT_TRUE(WaitUntilIdle());
    EXPECT_EQ(TakeHandedOver(), std::vector<HandedOver>{});
    EXPECT_EQ(FramesReceived(), 0u);
    EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
}

TEST_F(AsynchronousSnap, CountsAsRunningUntilItsPauseIsOver) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    sleep.Shut();
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sleep.WaitForSleeper());
    EXPECT_EQ(Grabber().GetAcquisitionState(), 2u);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_BUSY);
    sleep.Open();
    ASSERT_TRUE(WaitUntilIdle());
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
}

TEST_F(AsynchronousSnap, IsWaitedForByTheNextSnap) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    sleep.Shut();
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sleep.WaitForSleeper());
    std::atomic<bool> opened{false};
    sdk.OnCall("PxnFrameAnnounce", [&] { EXPECT_TRUE(opened); });
    std::atomic<bool> snapping{false};
    MV_ERRCODE result = MV_REFUSED;
    std::thread next([&] {
        snapping = true;
        result = Grabber().Snap(1);
    });
    ASSERT_TRUE(support::WaitUntil([&] { return snapping.load(); }));
    opened = true;
    sleep.Open();
    next.join();
    EXPECT_EQ(result, MV_OK);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
    EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{0});
}

TEST_F(AsynchronousSnap, IsWaitedForByTheNextSnapEvenIfThatIsRefused) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    // The mode is asked for only after the thread has been waited for.
    EXPECT_EQ(Grabber().Snap(0), MV_BAD_VALUE);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(AsynchronousSnap, IsNotWaitedForByASnapWithoutBuffers) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    sleep.Shut();
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sleep.WaitForSleeper());
    Grabber().SetAcquisitionState(0);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(101), MV_REFUSED);
    std::atomic<bool> hasReturned{false};
    std::thread next([&] {
        EXPECT_EQ(Grabber().Snap(1), MV_BUFFERS_NOT_PREPARED);
        hasReturned = true;
    });
    EXPECT_TRUE(support::WaitUntil([&] { return hasReturned.load(); }));
    sleep.Open();
    next.join();
}

TEST_F(AsynchronousSnap, IsWaitedForByStop) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    // The thread did all there was to do.
    EXPECT_EQ(sdk.Calls({"PxnFeatureCommandRun(camera0, \"AcquisitionStop\")", "PxnCaptureEnd",
                         "PxnCaptureQueueFlush", "PxnFrameRevokeAll"}),
              cleaningUp);
    EXPECT_EQ(sleep.Take(), std::vector<std::uint32_t>{1000});
}

TEST_F(AsynchronousSnap, IsEndedByStopWhenNoFrameHasCome) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    Forget();
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(Calls(), stopping);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    EXPECT_FALSE(sdk.Deliver(0));
}

TEST_F(AsynchronousSnap, StartsNoCleanupThreadOnceAStopIsUnderWay) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    sdk.Hold("PxnFeatureCommandRun");
    std::thread stopper([&] { EXPECT_EQ(Grabber().StopSnap(), MV_OK); });
    ASSERT_TRUE(sdk.WaitForCall(stop));
    Forget();
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(Log().back(), finished);
    sdk.Release("PxnFeatureCommandRun");
    stopper.join();
    EXPECT_EQ(sdk.Calls({"PxnFrameRevokeAll"}), Texts{revokeAll});
    EXPECT_EQ(sleep.Take(), std::vector<std::uint32_t>{1000});
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(AsynchronousSnap, StartsOneCleanupThreadForOneSnap) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    sleep.Shut();
    PxnFrame copy{};
    sdk.OnCall("PxnFrameRevokeAll", [] {});
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sleep.WaitForSleeper());
    // An SDK that calls back once more than it was asked to.
    copy.receiveStatus = PxnFrameStatusIncomplete;
    Grabber().FrameCallback(&copy);
    sleep.Open();
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnFrameRevokeAll"}), Texts{revokeAll});
}

TEST_F(AsynchronousSnap, StartsOneCleanupThreadForAFrameThatIsHandedBackTwice) {
    Ready(1);
    sdk.Data().broken.framesAreHandedBackTwice = true;
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    Forget();
    sdk.Hold("PxnFeatureCommandRun");
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sdk.WaitForCall(stop));
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(TakeHandedOver(), (std::vector<HandedOver>{{0, 1}, {0, 1}}));
    sdk.Release("PxnFeatureCommandRun");
    ASSERT_TRUE(WaitUntilIdle());
    EXPECT_EQ(Calls(), cleaningUp);
    EXPECT_FALSE(sdk.Deliver(0)); // revoked
}

TEST_F(AsynchronousSnap, MayBeRepeated) {
    Ready(1);
    for (int round = 0; round < 5; ++round) {
        ASSERT_EQ(Grabber().Snap(2), MV_OK);
        ASSERT_TRUE(sdk.Deliver(0));
    }
    EXPECT_EQ(TakeHandedOver().size(), 5u);
}

TEST_F(AsynchronousSnap, StartsCountingAnew) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(FramesReceived(), 1u);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    EXPECT_EQ(FramesReceived(), 0u);
}

TEST_F(AsynchronousSnap, EndsOnItsCleanupThreadAfterAnEarlierStop) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    Forget();
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(WaitUntilIdle());
    EXPECT_EQ(Calls(), cleaningUp);
}

TEST_F(AsynchronousSnap, IsWaitedForBeforeTheSdkIsUnloaded) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    sleep.Shut();
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sleep.WaitForSleeper());
    std::thread ending([&] { EXPECT_EQ(Grabber().DeInit(), MV_OK); });
    sleep.Open();
    ending.join();
    const Texts calls = sdk.Calls({"PxnFrameRevokeAll", "PxnShutdown"});
    EXPECT_EQ(calls, (Texts{revokeAll, "PxnShutdown()"}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

} // namespace
