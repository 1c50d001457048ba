// stop_snap_test.cpp - ending an acquisition
#include "tests/module/acquisition/snap_fixture.h"

#include "platform/event.h"

#include <functional>
#include <thread>

namespace {

class StopSnap : public SnapFixture {
protected:
    void Run(uint64_t buffers, uint32_t mode = 1) {
        Ready(buffers);
        ASSERT_EQ(Grabber().Snap(mode), MV_OK);
        Forget();
    }
    static std::string Stopped(const std::string& text) {
        return "1 CMivoraKVNPyxenClass::StopSnap: " + text;
    }
    static std::string NotStopped(const std::string& text, const std::string& reason) {
        return "0 CMivoraKVNPyxenClass::StopSnap: " + text + " failed: " + reason;
    }
    /// Stops when the first frame is handed over, then does `more`; there the SDK refuses all that
    /// would give frames back. Nothing is recorded afterwards.
    void StopInsideACallback(const std::function<void()>& more = [] {}) {
        onHandOver = [&](uint64_t) {
            EXPECT_EQ(Grabber().StopSnap(), MV_OK);
            more();
        };
        ASSERT_TRUE(sdk.Deliver(0));
        onHandOver = nullptr;
        Forget();
    }
    const Texts stopped{Stopped("successfully stopped camera acquisition"),
                        Stopped("successfully executed PxnCaptureEnd"),
                        Stopped("successfully flushed queue"),
                        Stopped("successfully executed PxnFrameRevokeAll")};
    const std::string invalidCall = "Call is invalid in the current context (e.g callback)";
};

TEST_F(StopSnap, IsRefusedBeforeInit) {
    EXPECT_EQ(Grabber().StopSnap(), MV_NOT_INITIALISED);
}

TEST_F(StopSnap, HasNothingToDoWhileIdle) {
    Ready(1);
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Log(), Texts{});
    EXPECT_EQ(sleep.Take(), std::vector<std::uint32_t>{});
}

TEST_F(StopSnap, HasNothingToDoInOtherModes) {
    Ready(1);
    for (const uint32_t mode : {3u, 4u, 5u, 6u}) {
        Grabber().SetAcquisitionState(mode);
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
        EXPECT_EQ(Grabber().GetAcquisitionState(), mode);
    }
    EXPECT_EQ(Calls(), Texts{});
    Grabber().SetAcquisitionState(0);
}

TEST_F(StopSnap, TakesEverythingDownInOrder) {
    for (const uint32_t mode : {1u, 2u}) {
        Run(2, mode);
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
        EXPECT_EQ(Calls(), stopping);
        EXPECT_EQ(Log(), stopped);
        EXPECT_EQ(sleep.Take(), std::vector<std::uint32_t>{1000});
        EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
        EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
        EXPECT_FALSE(sdk.IsCapturing());
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
        EXPECT_EQ(Calls(), Texts{});
        Destroy();
        sdk.Reset();
    }
}

TEST_F(StopSnap, GoesOnAfterEveryFailure) {
    Run(1);
    sdk.FailFeature(scripted::CameraHandle(), "AcquisitionStop", "PxnFeatureCommandRun", PxnErrIO);
    sdk.Fail("PxnCaptureEnd", PxnErrTimeout);
    sdk.Fail("PxnCaptureQueueFlush", PxnErrBusy);
    sdk.Fail("PxnFrameRevokeAll", PxnErrNotFound);
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(Calls(), stopping);
    EXPECT_EQ(Log(),
              (Texts{
                  NotStopped("Sending acquisition stop command to camera",
                             "Low level IO error in transport layer"),
                  NotStopped("PxnCaptureEnd", "Timeout during wait"),
                  NotStopped("PxnCaptureQueueFlush",
                             "The responsible module/entity is busy executing actions"),
                  NotStopped("PxnFrameRevokeAll",
                             "The designated instance (camera, feature etc.) cannot be found"),
              }));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(StopSnap, GoesOnAfterASingleFailure) {
    const std::pair<const char*, std::size_t> cases[] = {{"PxnFeatureCommandRun", 0},
                                                         {"PxnCaptureEnd", 1},
                                                         {"PxnCaptureQueueFlush", 2},
                                                         {"PxnFrameRevokeAll", 3}};
    for (const auto& [entry, line] : cases) {
        Run(1);
        sdk.Fail(entry, PxnErrIO);
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
        EXPECT_EQ(Calls(), stopping);
        const Texts log = Log();
        ASSERT_EQ(log.size(), 4u);
        for (std::size_t i = 0; i < log.size(); ++i) {
            EXPECT_EQ(log[i] == stopped[i], i != line) << log[i];
        }
        Destroy();
        sdk.Reset();
    }
}

TEST_F(StopSnap, CountsAsRunningUntilItsPauseIsOver) {
    Run(1);
    sleep.Shut();
    std::thread stopper([&] { EXPECT_EQ(Grabber().StopSnap(), MV_OK); });
    ASSERT_TRUE(sleep.WaitForSleeper());
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
    sleep.Open();
    stopper.join();
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(StopSnap, LetsFramesBeQueuedDuringItsPause) {
    Run(1);
    sleep.Shut();
    std::thread stopper([&] { EXPECT_EQ(Grabber().StopSnap(), MV_OK); });
    ASSERT_TRUE(sleep.WaitForSleeper());
    // A host that writes the number starts anew without waiting for the pause.
    Grabber().SetAcquisitionState(0);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    Forget();
    EXPECT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(Calls(), Texts{Queue(0)});
    sleep.Open();
    stopper.join();
}

TEST_F(StopSnap, KeepsALateFrameFromBeingQueuedAgain) {
    Run(2);
    sdk.Hold("PxnFeatureCommandRun");
    std::thread stopper([&] { EXPECT_EQ(Grabber().StopSnap(), MV_OK); });
    ASSERT_TRUE(sdk.WaitForCall(stop));
    ASSERT_TRUE(sdk.Deliver(1, 0, 5));
    const Texts log = Log();
    EXPECT_EQ(log.size(), 1u); // the frame's, and nothing of queueing
    sdk.Release("PxnFeatureCommandRun");
    stopper.join();
    EXPECT_EQ(sdk.Calls({"PxnCaptureFrameQueue"}), Texts{});
    EXPECT_EQ(TakeHandedOver(), (std::vector<HandedOver>{{1, 1}}));
}

TEST_F(StopSnap, WaitsForARunningCallback) {
    Run(2);
    platform::Event entered;
    platform::Event leave;
    onHandOver = [&](uint64_t) {
        entered.Set();
        leave.Wait(platform::kInfinite);
    };
    ASSERT_TRUE(sdk.DeliverOnThread(0));
    ASSERT_TRUE(entered.Wait(10000));
    std::thread stopper([&] { EXPECT_EQ(Grabber().StopSnap(), MV_OK); });
    ASSERT_TRUE(sdk.WaitForCall(captureEnd));
    EXPECT_EQ(sdk.Calls({"PxnFrameRevokeAll"}), Texts{});
    leave.Set();
    stopper.join();
    sdk.WaitForDeliveries();
    EXPECT_EQ(sdk.Calls({"PxnCaptureFrameQueue"}), Texts{});
    EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
}

TEST_F(StopSnap, WaitsForAFrameThatIsJustBeingQueued) {
    Run(1);
    sdk.Hold("PxnCaptureFrameQueue");
    ASSERT_TRUE(sdk.DeliverOnThread(0));
    ASSERT_TRUE(sdk.WaitForCall("PxnCaptureFrameQueue"));
    std::thread stopper([&] { EXPECT_EQ(Grabber().StopSnap(), MV_OK); });
    sdk.Release("PxnCaptureFrameQueue");
    stopper.join();
    sdk.WaitForDeliveries();
    EXPECT_EQ(Calls(), Texts{Queue(0)} + stopping);
    EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{});
}

TEST_F(StopSnap, SetsItsEventBeforeItWaitsForTheMutex) {
    Run(2);
    sdk.Data().broken.callbacksOverlap = true;
    std::thread stopper;
    bool refused = false;
    sdk.OnCall("PxnCaptureFrameQueue", [&] {
        if (stopper.joinable()) {
            return;
        }
        stopper = std::thread([&] { EXPECT_EQ(Grabber().StopSnap(), MV_OK); });
        // The mutex is this thread's: a frame that comes here is queued again until the event is
        // set.
        refused = support::WaitUntil([&] { return !sdk.Deliver(1); });
    });
    ASSERT_TRUE(sdk.Deliver(0));
    stopper.join();
    EXPECT_TRUE(refused);
    EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{});
}

TEST_F(StopSnap, WaitsForAFrameThatIsJustBeingQueuedThoughThisThreadHadACallback) {
    Run(2);
    sdk.Data().broken.callbacksOverlap = true;
    sdk.Hold("PxnCaptureFrameQueue");
    ASSERT_TRUE(sdk.DeliverOnThread(0));
    ASSERT_TRUE(sdk.WaitForCall("PxnCaptureFrameQueue"));
    std::thread stopper([&] {
        // Not queued again, since the other callback is just at that.
        EXPECT_TRUE(sdk.Deliver(1));
        sdk.Release("PxnCaptureFrameQueue");
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    });
    stopper.join();
    sdk.WaitForDeliveries();
    EXPECT_EQ(Calls(), Texts{Queue(0)} + stopping);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(StopSnap, WorksInsideTheCallbackOfAContinuousSnap) {
    Run(2);
    onHandOver = [&](uint64_t) {
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    };
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(Calls(), stopping);
    const Texts log = Log();
    EXPECT_EQ(Texts(log.begin() + 1, log.end()),
              (Texts{stopped[0], NotStopped("PxnCaptureEnd", invalidCall),
                     NotStopped("PxnCaptureQueueFlush", invalidCall),
                     NotStopped("PxnFrameRevokeAll", invalidCall)}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{1});
    onHandOver = nullptr;
    // What the SDK did not allow inside the callback does not hinder the next snap.
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(Calls(), (Texts{flush, revokeAll, Announce(0), Announce(1), captureStart, Queue(0),
                              Queue(1), start}));
    ASSERT_TRUE(sdk.Deliver(1));
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
}

TEST_F(StopSnap, LeavesNothingToTakeBackWhereTheSdkFlushesInsideItsCallback) {
    Run(1);
    Grabber().Api().PxnCaptureQueueFlush = [](PxnHandle) -> PxnError {
        return PxnErrSuccess;
    };
    StopInsideACallback();
    ASSERT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{});
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(Calls(), (Texts{Announce(0), captureStart, Queue(0), start}));
}

TEST_F(StopSnap, WorksInsideTheCallbackOfASingleSnap) {
    Run(1, 2);
    onHandOver = [&](uint64_t) {
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    };
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(Calls(), stopping);
    EXPECT_EQ(Log().back(),
              "1 CMivoraKVNPyxenClass::FrameCallback: An asynchronous single snap has finished");
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    onHandOver = nullptr;
    EXPECT_EQ(Grabber().Snap(2), MV_OK);
}

TEST_F(StopSnap, LeavesWhatTheSdkKeepsInsideItsCallbackToTheNextSnap) {
    Run(3);
    StopInsideACallback();
    ASSERT_EQ(sdk.QueuedFrames(), (std::vector<std::uint64_t>{1, 2}));
    EXPECT_EQ(Grabber().Snap(0), MV_BAD_VALUE);
    EXPECT_EQ(Calls(), Texts{});
    const Texts snapping{Announce(0), Announce(1), Announce(2), captureStart,
                         Queue(0),    Queue(1),    Queue(2),    start};
    // The SDK would not queue a frame twice.
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(Calls(), (Texts{flush, revokeAll} + snapping));
    EXPECT_EQ(sdk.QueuedFrames(), (std::vector<std::uint64_t>{0, 1, 2}));
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    Forget();
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(Calls(), snapping);
}

TEST_F(StopSnap, LeavesTheMemoryOfWhatTheSdkKeepsInsideItsCallback) {
    Run(3);
    void* const last = Grabber().GetFrameBuffer(2);
    StopInsideACallback([&] {
        EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_BUSY);
        EXPECT_EQ(Grabber().GetFrameBuffer(2), last);
    });
    ASSERT_EQ(sdk.QueuedFrames(), (std::vector<std::uint64_t>{1, 2}));
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCapture", "PxnFrame"}), (Texts{flush, revokeAll}));
    EXPECT_EQ(sdk.QueuedFrames(), std::vector<std::uint64_t>{});
    EXPECT_EQ(Grabber().GetFrameBuffer(1), nullptr);
    Forget();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(StopSnap, LeavesNothingOfAClosedCameraToTakeBack) {
    Run(1);
    StopInsideACallback();
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    Forget();
    EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(StopSnap, WorksInsideTheCallbackWhileTheHostStopsToo) {
    Run(1);
    platform::Event entered;
    platform::Event stopNow;
    onHandOver = [&](uint64_t) {
        entered.Set();
        stopNow.Wait(platform::kInfinite);
        // The other thread waits for this callback; to wait for that thread would be for ever.
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    };
    ASSERT_TRUE(sdk.DeliverOnThread(0));
    ASSERT_TRUE(entered.Wait(10000));
    std::thread stopper([&] { EXPECT_EQ(Grabber().StopSnap(), MV_OK); });
    ASSERT_TRUE(sdk.WaitForCall(captureEnd));
    stopNow.Set();
    stopper.join();
    sdk.WaitForDeliveries();
    EXPECT_EQ(Calls(), stopping);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
}

TEST_F(StopSnap, EndsAnAcquisitionThatOutlivedItsCamera) {
    Run(1);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
    Forget();
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(Calls(),
              (Texts{"PxnFeatureCommandRun(null, \"AcquisitionStop\")", "PxnCaptureEnd(null)",
                     "PxnCaptureQueueFlush(null)", "PxnFrameRevokeAll(null)"}));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
}

} // namespace
