// snap_continuous_test.cpp - starting a continuous acquisition
#include "tests/module/acquisition/snap_fixture.h"

namespace {

using ContinuousSnap = SnapFixture;

const std::string kStartFailed = "Sending acquisition start command to camera failed";
// Before any test installs one.
ILogSink* const sinkOfHostsThatInstallNone = MivoraInstalledLogSink();

const std::string kNotQueued =
    "0 CMivoraKVNPyxenClass::QueueAllBuffers: PxnCaptureFrameQueue failed: The designated instance (camera, feature etc.) cannot be found";

TEST_F(ContinuousSnap, StartsCaptureAndThenQueues) {
    Ready(3);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(Calls(), (Texts{Announce(0), Announce(1), Announce(2), captureStart, Queue(0),
                              Queue(1), Queue(2), start}));
    EXPECT_EQ(Log(), Numbered(Said("Announced buffer "), 3) +
                         Texts{Said("PxnCaptureStart successful")} +
                         Numbered("1 CMivoraKVNPyxenClass::QueueAllBuffers: Queued buffer ", 3) +
                         Texts{Said("started camera acquisition")});
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
    EXPECT_EQ(sdk.QueuedFrames(), (std::vector<std::uint64_t>{0, 1, 2}));
}

TEST_F(ContinuousSnap, QueuesAndThenStartsCapture) {
    Ready(2, Strategy::kQueueFirst);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(Calls(), (Texts{Announce(0), Announce(1), Queue(0), Queue(1), captureStart, start}));
    const Texts expected =
        Numbered(Said("Announced buffer "), 2) +
        Numbered("1 CMivoraKVNPyxenClass::QueueAllBuffers: Queued buffer ", 2) +
        Texts{Said("PxnCaptureStart successful"), Said("started camera acquisition")};
    EXPECT_EQ(Log(), expected);
}

TEST_F(ContinuousSnap, StartsForAHostThatNeverInstalledASink) {
    UseSink(sinkOfHostsThatInstallNone);
    Ready(3);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(sdk.QueuedFrames(), (std::vector<std::uint64_t>{0, 1, 2}));
}

TEST_F(ContinuousSnap, RunsWithoutAnyBuffer) {
    Ready(0);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(Calls(), (Texts{captureStart, start}));
    EXPECT_EQ(Log(),
              (Texts{Said("PxnCaptureStart successful"), Said("started camera acquisition")}));
}

TEST_F(ContinuousSnap, PassesOverAFailedAnnouncementInSilence) {
    Ready(3);
    sdk.Fail("PxnFrameAnnounce", PxnErrIO, 2);
    // The SDK does not queue what it does not know.
    EXPECT_EQ(Grabber().Snap(1), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), Announce(1), Announce(2), captureStart, Queue(0),
                              Queue(1), captureEnd, flush, revokeAll}));
    EXPECT_EQ(Log(),
              (Texts{Said("Announced buffer 0"), Said("Announced buffer 2"),
                     Said("PxnCaptureStart successful"),
                     "1 CMivoraKVNPyxenClass::QueueAllBuffers: Queued buffer 0", kNotQueued}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
}

TEST_F(ContinuousSnap, RunsWithWhatTheSdkQueuesUnannounced) {
    Ready(3);
    sdk.Data().broken.unannouncedFramesAreQueued = true;
    sdk.Fail("PxnFrameAnnounce", PxnErrIO, 2);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    const Texts log = Log();
    EXPECT_EQ(log[0], Said("Announced buffer 0"));
    EXPECT_EQ(log[1], Said("Announced buffer 2"));
    EXPECT_EQ(sdk.Calls({"PxnCaptureFrameQueue"}), (Texts{Queue(0), Queue(1), Queue(2)}));
    EXPECT_EQ(sdk.QueuedFrames(), (std::vector<std::uint64_t>{0, 1, 2}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
}

TEST_F(ContinuousSnap, GoesOnWhenNothingCouldBeAnnounced) {
    Ready(2);
    sdk.FailAlways("PxnFrameAnnounce", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(1), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Log(), (Texts{Said("PxnCaptureStart successful"), kNotQueued}));
}

TEST_F(ContinuousSnap, CountsTheFirstAnnouncementAsAFailureWithoutASink) {
    WithoutSink();
    Ready(3);
    EXPECT_EQ(Grabber().Snap(1), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), revokeAll}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(ContinuousSnap, PassesOverFailedAnnouncementsToTheFirstSuccessWithoutASink) {
    WithoutSink();
    Ready(3);
    sdk.Fail("PxnFrameAnnounce", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(1), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), Announce(1), revokeAll}));
}

TEST_F(ContinuousSnap, RunsWithoutASinkWhenNothingCouldBeAnnounced) {
    WithoutSink();
    Ready(1);
    sdk.Data().broken.unannouncedFramesAreQueued = true;
    sdk.Fail("PxnFrameAnnounce", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(Calls(), (Texts{Announce(0), captureStart, Queue(0), start}));
}

TEST_F(ContinuousSnap, FailsWithoutASinkWhenTheSdkQueuesNothingUnannounced) {
    WithoutSink();
    Ready(1);
    sdk.Fail("PxnFrameAnnounce", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(1), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), captureStart, Queue(0), captureEnd, flush, revokeAll}));
}

TEST_F(ContinuousSnap, UndoesAFailedQueueingAfterTheStart) {
    Ready(3);
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO, 2);
    EXPECT_EQ(Grabber().Snap(1), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), Announce(1), Announce(2), captureStart, Queue(0),
                              Queue(1), captureEnd, flush, revokeAll}));
    const Texts expected =
        Numbered(Said("Announced buffer "), 3) +
        Texts{
            Said("PxnCaptureStart successful"),
            "1 CMivoraKVNPyxenClass::QueueAllBuffers: Queued buffer 0",
            "0 CMivoraKVNPyxenClass::QueueAllBuffers: PxnCaptureFrameQueue failed: Low level IO error in transport layer",
        };
    EXPECT_EQ(Log(), expected);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
    EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
}

TEST_F(ContinuousSnap, UndoesAFailedQueueingBeforeTheStart) {
    Ready(2, Strategy::kQueueFirst);
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO, 2);
    EXPECT_EQ(Grabber().Snap(1), MV_ACQUISITION_FAILED);
    EXPECT_EQ(Calls(), (Texts{Announce(0), Announce(1), Queue(0), Queue(1), flush, revokeAll}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
}

TEST_F(ContinuousSnap, CallsAFailedCaptureStartASuccess) {
    for (const Strategy strategy : {Strategy::kStartFirst, Strategy::kQueueFirst}) {
        Ready(1, strategy);
        sdk.Fail("PxnCaptureStart", PxnErrIO);
        EXPECT_EQ(Grabber().Snap(1), MV_OK);
        EXPECT_EQ(Calls(), strategy == Strategy::kStartFirst
                               ? (Texts{Announce(0), captureStart, flush, revokeAll})
                               : (Texts{Announce(0), Queue(0), captureStart, flush, revokeAll}));
        EXPECT_EQ(Log().back(), Failed("PxnCaptureStart failed"));
        EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
        EXPECT_EQ(Grabber().Snap(1), MV_BUSY);
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
        EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
        Destroy();
        sdk.Reset();
    }
}

TEST_F(ContinuousSnap, UndoesAFailedStartCommand) {
    for (const Strategy strategy : {Strategy::kStartFirst, Strategy::kQueueFirst}) {
        Ready(1, strategy);
        sdk.FailFeature(scripted::CameraHandle(), "AcquisitionStart", "PxnFeatureCommandRun",
                        PxnErrIO);
        EXPECT_EQ(Grabber().Snap(1), MV_ACQUISITION_FAILED);
        const Texts begin = strategy == Strategy::kStartFirst
                                ? Texts{Announce(0), captureStart, Queue(0)}
                                : Texts{Announce(0), Queue(0), captureStart};
        EXPECT_EQ(Calls(), (begin + Texts{start, captureEnd, flush, revokeAll}));
        EXPECT_EQ(Log().back(), Failed(kStartFailed));
        EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
        Destroy();
        sdk.Reset();
    }
}

TEST_F(ContinuousSnap, StartsCountingAnew) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(FramesReceived(), 2u);
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(FramesReceived(), 2u);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(FramesReceived(), 0u);
}

TEST_F(ContinuousSnap, RequeuesAgainAfterAnEarlierStop) {
    Ready(1);
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(Grabber().Snap(1), MV_OK);
        ASSERT_TRUE(sdk.Deliver(0));
        EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{0});
        ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    }
}

TEST_F(ContinuousSnap, TakesAHundredBuffers) {
    Ready(100);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(sdk.AnnouncedFrames().size(), 100u);
    EXPECT_EQ(sdk.QueuedFrames().size(), 100u);
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(sdk.AnnouncedFrames().size(), 0u);
}

} // namespace
