// calls_from_inside_test.cpp - operations inside a frame callback or the receiver of a snap
#include "tests/module/acquisition/snap_fixture.h"

#include "platform/event.h"

#include <functional>
#include <thread>

namespace {

class CallsFromInside : public SnapFixture {
protected:
    /// Every operation that needs the SDK to let go of frames or cameras.
    void ExpectRefusals() {
        MV_DLG_EXITCODE exitCode = MV_DLG_OK;
        const Texts logged = sink.Lines();
        const Texts called = sdk.Calls();
        EXPECT_EQ(Grabber().OpenActCamera(), MV_BUSY);
        EXPECT_EQ(Grabber().CloseActCamera(), MV_BUSY);
        EXPECT_EQ(Grabber().RefreshCameraList(), MV_BUSY);
        EXPECT_EQ(Grabber().SelectCameraDialog(nullptr, &exitCode), MV_BUSY);
        EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_BUSY);
        EXPECT_EQ(Grabber().DeInit(), MV_BUSY);
        EXPECT_EQ(exitCode, MV_DLG_OK);
        EXPECT_EQ(sink.Lines(), logged);
        EXPECT_EQ(sdk.Calls(), called);
        ++rounds;
    }
    int rounds = 0;
};

TEST_F(CallsFromInside, OfAContinuousAcquisitionAreRefused) {
    Ready(2);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    onHandOver = [&](uint64_t) {
        ExpectRefusals();
    };
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sdk.Deliver(1));
    EXPECT_EQ(rounds, 2);
    EXPECT_EQ(sdk.QueuedFrames(), (std::vector<std::uint64_t>{0, 1}));
    onHandOver = nullptr;
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
}

TEST_F(CallsFromInside, AreRefusedAfterAStopInsideAsWell) {
    Ready(2);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    onHandOver = [&](uint64_t) {
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
        ExpectRefusals();
    };
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(rounds, 1);
}

TEST_F(CallsFromInside, OfASynchronousSnapAreRefused) {
    Ready(1);
    sdk.Data().completeWaitsAtOnce = true;
    onHandOver = [&](uint64_t) {
        ExpectRefusals();
    };
    EXPECT_EQ(Grabber().Snap(3), MV_OK);
    EXPECT_EQ(rounds, 1);
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
}

TEST_F(CallsFromInside, GiveTheirEarlierResultsFirst) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    MivoraInstallLogSink(&sink);
    CMivoraKVNPyxenClass other(nullptr);
    MivoraInstallLogSink(nullptr);
    onHandOver = [&](uint64_t) {
        EXPECT_EQ(other.OpenActCamera(), MV_NOT_INITIALISED);
        EXPECT_EQ(other.CloseActCamera(), MV_CAMERA_NOT_OPEN);
        EXPECT_EQ(other.RefreshCameraList(), MV_NOT_INITIALISED);
        EXPECT_EQ(other.PrepareFrameBuffers(1), MV_NOT_INITIALISED);
        ++rounds;
    };
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_EQ(other.Init(), MV_OK);
    onHandOver = [&](uint64_t) {
        EXPECT_EQ(other.OpenActCamera(), MV_NO_CAMERA);
        EXPECT_EQ(other.CloseActCamera(), MV_CAMERA_NOT_OPEN);
        EXPECT_EQ(other.PrepareFrameBuffers(1), MV_CAMERA_NOT_OPEN);
        // The SDK waits inside the callback of any camera for nothing.
        EXPECT_EQ(other.RefreshCameraList(), MV_BUSY);
        EXPECT_EQ(other.DeInit(), MV_BUSY);
        ++rounds;
    };
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(rounds, 2);
}

TEST_F(CallsFromInside, StopAnAcquisitionWhileAnotherCallbackQueuesItsFrame) {
    Ready(2);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    Forget();
    sdk.Data().broken.callbacksOverlap = true;
    sdk.Hold("PxnCaptureFrameQueue");
    ASSERT_TRUE(sdk.DeliverOnThread(0));
    ASSERT_TRUE(sdk.WaitForCall("PxnCaptureFrameQueue"));
    platform::Event stopBegins;
    onHandOver = [&](uint64_t) {
        stopBegins.Set();
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
        EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    };
    ASSERT_TRUE(sdk.DeliverOnThread(1));
    ASSERT_TRUE(stopBegins.Wait(10000));
    sdk.Release("PxnCaptureFrameQueue");
    sdk.WaitForDeliveries();
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    EXPECT_EQ(sdk.Calls({"PxnFeatureCommandRun"}), Texts{stop});
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnFeatureCommandRun"}), Texts{stop});
}

TEST_F(CallsFromInside, DoNotWaitForTheWindUpThatWaitsForThem) {
    Ready(1);
    sdk.Data().broken.callbacksOverlap = true;
    sdk.Data().broken.framesAreHandedBackTwice = true;
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    int calls = 0;
    platform::Event secondCallback; // the capture does not end before
    sdk.OnCall("PxnCaptureEnd", [&] { secondCallback.Wait(10000); });
    onHandOver = [&](uint64_t) {
        if (++calls < 2) {
            return;
        }
        secondCallback.Set();
        // The thread that the first callback has started ends the capture and waits for this one.
        ASSERT_TRUE(sdk.WaitForCall(captureEnd));
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
        EXPECT_EQ(Grabber().Snap(2), MV_BUSY);
    };
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCaptureEnd"}), Texts{captureEnd});
}

TEST_F(CallsFromInside, StartNoSecondWindUpWhileTheFirstIsJoined) {
    Ready(1);
    sdk.Data().broken.framesAreHandedBackTwice = true;
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    sleep.Shut();
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sleep.WaitForSleeper());
    std::thread next([&] { EXPECT_EQ(Grabber().Snap(1), MV_OK); });
    // The next snap has taken the thread and waits for it; the number is still 2.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    PxnFrame again{};
    again.receiveStatus = PxnFrameStatusIncomplete;
    Grabber().FrameCallback(&again);
    sleep.Open();
    next.join();
    // A second wind-up would end the capture that has just begun.
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
    EXPECT_TRUE(sdk.IsCapturing());
    EXPECT_EQ(sdk.Calls({"PxnCaptureEnd"}), Texts{captureEnd});
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
}

} // namespace
