// snap_order_test.cpp - whether a failed start is logged before or after it is undone
#include "tests/module/acquisition/snap_fixture.h"

namespace {

class SnapOrder : public SnapFixture {
protected:
    /// What the last line was when the entry was called first during a snap that fails.
    std::string SaidBefore(const std::string& entry, uint32_t mode) {
        Texts lines;
        sdk.OnCall(entry, [&] {
            if (lines.empty()) {
                lines = sink.Lines();
            }
        });
        Grabber().Snap(mode);
        sdk.ClearHooks();
        return lines.empty() ? "" : lines.back();
    }
    void Restart(Strategy strategy = Strategy::kStartFirst) {
        Destroy();
        sdk.Reset();
        Ready(1, strategy);
    }

    const std::string startFailed = Failed("Sending acquisition start command to camera failed");
    const std::string captureFailed = Failed("PxnCaptureStart failed");
};

TEST_F(SnapOrder, AContinuousSnapIsUndoneAfterItsFailureIsTold) {
    const std::string queueFailed =
        "0 CMivoraKVNPyxenClass::QueueAllBuffers: PxnCaptureFrameQueue failed: Low level IO error in transport layer";
    Restart();
    sdk.Fail("PxnCaptureStart", PxnErrIO);
    EXPECT_EQ(SaidBefore("PxnCaptureQueueFlush", 1), captureFailed);
    Restart();
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO);
    EXPECT_EQ(SaidBefore("PxnCaptureEnd", 1), queueFailed);
    Restart(Strategy::kQueueFirst);
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO);
    EXPECT_EQ(SaidBefore("PxnCaptureQueueFlush", 1), queueFailed);
}

TEST_F(SnapOrder, ASingleSnapIsUndoneBeforeItsFailureIsTold) {
    const std::string announced = Said("Announced buffer 0");
    const std::string queued = Said("queued one buffer");
    const std::string captured = Said("PxnCaptureStart successful");
    Restart();
    sdk.Fail("PxnCaptureStart", PxnErrIO);
    EXPECT_EQ(SaidBefore("PxnFrameRevokeAll", 2), announced);
    Restart();
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO);
    EXPECT_EQ(SaidBefore("PxnFrameRevokeAll", 2), captured);
    Restart(Strategy::kQueueFirst);
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO);
    EXPECT_EQ(SaidBefore("PxnFrameRevokeAll", 2), announced);
    Restart();
    sdk.Fail("PxnCaptureStart", PxnErrIO);
    EXPECT_EQ(SaidBefore("PxnFrameRevokeAll", 3), queued);
    Restart();
    sdk.Fail("PxnCaptureFrameQueue", PxnErrIO);
    EXPECT_EQ(SaidBefore("PxnFrameRevokeAll", 3), captured);
}

TEST_F(SnapOrder, EverySnapIsUndoneAfterItIsToldThatTheCameraCannotBeStarted) {
    for (const uint32_t mode : {1u, 2u, 3u}) {
        Restart();
        sdk.Fail("PxnFeatureCommandRun", PxnErrIO);
        EXPECT_EQ(SaidBefore("PxnCaptureEnd", mode), startFailed) << mode;
    }
}

} // namespace
