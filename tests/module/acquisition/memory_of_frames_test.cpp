// memory_of_frames_test.cpp - memory that the SDK may write to is neither freed nor resized
//
// Whatever fails and whoever goes: the sanitizers find what is written to freed memory.
#include "tests/module/acquisition/snap_fixture.h"

#include "platform/event.h"

#include <atomic>
#include <thread>

namespace {

class MemoryOfFrames : public SnapFixture {
protected:
    void Run(uint64_t buffers) {
        Ready(buffers);
        ASSERT_EQ(Grabber().Snap(1), MV_OK);
        Forget();
    }
    /// From now on the SDK gives nothing back.
    void KeepEverything() {
        for (const char* const entry : {"PxnFeatureCommandRun", "PxnCaptureEnd",
                                        "PxnCaptureQueueFlush", "PxnFrameRevokeAll"}) {
            sdk.FailAlways(entry, PxnErrIO);
        }
    }
    /// Another grabber of the same library, which keeps it started.
    std::unique_ptr<CMivoraKVNPyxenClass> MakeAnother() {
        MivoraInstallLogSink(&sink);
        auto other = std::make_unique<CMivoraKVNPyxenClass>(nullptr);
        MivoraInstallLogSink(nullptr);
        EXPECT_EQ(other->Init(), MV_OK);
        return other;
    }
    const std::string close = "PxnCameraClose(camera0)";
    const std::string kept = "0   ERROR: the camera SDK still holds frame buffers";
};

TEST_F(MemoryOfFrames, StaysWhileNeitherStopNorPreparingGetsItBack) {
    Run(2);
    KeepEverything();
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    void* const image = Grabber().GetFrameBuffer(1);
    Forget();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_REFUSED);
    EXPECT_EQ(Calls(), (Texts{flush, revokeAll}));
    EXPECT_EQ(Log(), (Texts{"1 CMivoraKVNPyxenClass::PrepareFrameBuffers",
                            "1   CMivoraKVNPyxenClass::PrepareFrameBuffers: got mutex", kept,
                            "1 2 Framebuffers are currently allocated.",
                            "1 CMivoraKVNPyxenClass::PrepareFrameBuffers EXIT"}));
    EXPECT_EQ(Grabber().GetFrameBuffer(1), image);
    ASSERT_TRUE(sdk.Deliver(1, 0, 1, 0x77));
    EXPECT_EQ(static_cast<const uint8_t*>(image)[0], 0x77);
    EXPECT_EQ(Grabber().Snap(1), MV_BUFFERS_NOT_PREPARED);
    // It has one of the two now, and takes the other one back.
    sdk.ClearFailures();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
    EXPECT_EQ(Grabber().GetFrameBuffer(0), nullptr);
    EXPECT_FALSE(sdk.Deliver(0));
}

TEST_F(MemoryOfFrames, IsNotResizedEither) {
    Run(1);
    KeepEverything();
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    Camera()["Width"].intValue = 16;
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_REFUSED);
    ASSERT_TRUE(sdk.Deliver(0, 0, 1, 0x77));
    EXPECT_EQ(static_cast<const uint8_t*>(Grabber().GetFrameBuffer(0))[640 * 480 - 1], 0x77);
}

TEST_F(MemoryOfFrames, ComesBackByTheCallbackAlone) {
    Run(1);
    KeepEverything();
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    Forget();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(MemoryOfFrames, ComesBackByEitherOfFlushAndRevocation) {
    for (const char* const failing : {"PxnCaptureQueueFlush", "PxnFrameRevokeAll"}) {
        Run(2);
        sdk.Fail(failing, PxnErrIO);
        ASSERT_EQ(Grabber().StopSnap(), MV_OK);
        Forget();
        EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
        EXPECT_EQ(Calls(), Texts{});
        EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{});
        Destroy();
        sdk.Reset();
    }
}

TEST_F(MemoryOfFrames, OutlivesACameraThatIsNotClosed) {
    Run(2);
    void* const image = Grabber().GetFrameBuffer(1);
    sdk.FailAlways("PxnCameraClose", PxnErrIO);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(TakeHandedOver(), std::vector<HandedOver>{});
    // The frame is written, but no longer for this grabber.
    ASSERT_TRUE(sdk.Deliver(1, 0, 1, 0x77));
    EXPECT_EQ(TakeHandedOver(), std::vector<HandedOver>{});
    EXPECT_EQ(Grabber().GetFrameBuffer(1), image);
    EXPECT_EQ(static_cast<const uint8_t*>(image)[0], 0x77);
    Destroy();
}

TEST_F(MemoryOfFrames, OutlivesAGrabberWhoseCameraIsNotClosed) {
    const auto other = MakeAnother();
    Run(2);
    sdk.FailAlways("PxnCameraClose", PxnErrIO);
    Destroy();
    ASSERT_TRUE(sdk.Deliver(1, 0, 1, 0x77));
    EXPECT_EQ(TakeHandedOver(), std::vector<HandedOver>{});
    Forget();
    // The other one closes the camera when it lists cameras, and says nothing of it.
    EXPECT_EQ(other->RefreshCameraList(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCameraClose"}), Texts{close});
    sdk.ClearFailures();
    Forget();
    EXPECT_EQ(other->RefreshCameraList(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCameraClose"}), Texts{close});
    for (const std::string& line : Log()) {
        EXPECT_EQ(line.find("Close failed"), std::string::npos) << line;
        EXPECT_NE(line[0], '0') << line;
    }
    EXPECT_FALSE(sdk.Deliver(0));
    Forget();
    EXPECT_EQ(other->RefreshCameraList(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCameraClose"}), Texts{});
}

TEST_F(MemoryOfFrames, IsLetGoByASecondAttemptBeforeTheShutdown) {
    const auto other = MakeAnother();
    Run(2);
    sdk.Fail("PxnCameraClose", PxnErrIO);
    Destroy();
    EXPECT_EQ(sdk.Calls({"PxnCameraClose", "PxnShutdown"}), (Texts{close, close, "PxnShutdown()"}));
    EXPECT_FALSE(sdk.Deliver(1));
}

TEST_F(MemoryOfFrames, IsLetGoByTheLastShutdown) {
    Run(2);
    sdk.FailAlways("PxnCameraClose", PxnErrIO);
    Destroy();
    EXPECT_EQ(sdk.StartupCount(), 0);
    EXPECT_FALSE(sdk.Deliver(1));
}

TEST_F(MemoryOfFrames, IsLetGoWhenTheSdkNoLongerKnowsTheCamera) {
    Run(2);
    sdk.Fail("PxnCameraClose", PxnErrBadHandle, 1, 2);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    Forget();
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(sdk.TakeCalls({"PxnCameraClose"}), Texts{close});
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(sdk.TakeCalls({"PxnCameraClose"}), Texts{});
}

TEST_F(MemoryOfFrames, OfAnUnclosedCameraIsNotReshapedForTheNext) {
    scripted::Camera second = Camera();
    second.id = "second";
    second.extendedId = "second, extended";
    sdk.Data().cameras.push_back(std::move(second));
    Run(2);
    sdk.FailAlways("PxnCameraClose", PxnErrIO);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    Grabber().SetAcquisitionState(0);
    ASSERT_EQ(Grabber().SetActCameraIndex(1), MV_OK);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    EXPECT_NE(Grabber().GetFrameBuffer(0), nullptr);
    ASSERT_TRUE(sdk.Deliver(1, 0, 1, 0x77));
    sdk.ClearFailures();
    Forget();
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCameraClose", "PxnCameraOpen"})[1], close);
}

TEST_F(MemoryOfFrames, IsThatOfKnownFramesAlone) {
    Run(1);
    PxnFrame* const frame = sdk.FrameOf(0);
    ASSERT_NE(frame, nullptr);
    void* const context = frame->context[0];
    for (void* const nonsense : {static_cast<void*>(nullptr), static_cast<void*>(this)}) {
        frame->context[0] = nonsense;
        ASSERT_TRUE(sdk.Deliver(0));
        EXPECT_EQ(TakeHandedOver(), std::vector<HandedOver>{});
        frame->context[0] = context;
        ASSERT_EQ(Grabber().StopSnap(), MV_OK);
        ASSERT_EQ(Grabber().Snap(1), MV_OK);
    }
    frame->context[1] = this;
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(TakeHandedOver(), std::vector<HandedOver>{});
}

TEST_F(MemoryOfFrames, LeftByASynchronousSnapIsTakenBackByTheNext) {
    for (const uint32_t next : {1u, 2u, 3u}) {
        Ready(1);
        sdk.Data().completeWaitsAtOnce = true;
        sdk.Fail("PxnCaptureFrameWait", PxnErrTimeout);
        EXPECT_EQ(Grabber().Snap(3), MV_ACQUISITION_FAILED);
        EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{0});
        Forget();
        EXPECT_EQ(Grabber().Snap(next), MV_OK);
        const Texts calls = Calls();
        ASSERT_GE(calls.size(), 3u);
        EXPECT_EQ(Texts(calls.begin(), calls.begin() + 3), (Texts{flush, revokeAll, Announce(0)}));
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
        Destroy();
        sdk.Reset();
    }
}

TEST_F(MemoryOfFrames, ThatASynchronousSnapGotBackIsNotTakenBackAgain) {
    Ready(1);
    sdk.Data().completeWaitsAtOnce = true;
    sdk.Fail("PxnCaptureFrameWait", PxnErrTimeout);
    EXPECT_EQ(Grabber().Snap(3), MV_ACQUISITION_FAILED);
    ASSERT_EQ(Grabber().Snap(3), MV_OK);
    Forget();
    EXPECT_EQ(Grabber().Snap(3), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCaptureQueueFlush", "PxnFrameRevokeAll"}), Texts{});
    Forget();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCaptureQueueFlush", "PxnFrameRevokeAll"}), Texts{});
}

} // namespace
