// memory_on_simulator_test.cpp - frames of a library that goes on filling them
//
// The sanitizers find what is written to freed memory.
#include "tests/module/simulator_grabber_fixture.h"

#include "platform/event.h"

namespace {

class MemoryOnSimulator : public SimulatorGrabberFixture {
protected:
    void Run() {
        ASSERT_EQ(grabber->Snap(1), MV_OK);
        ExpectMoreFrames();
    }
    /// A grabber in the place of the first one, which is deleted.
    void DeleteGrabber() {
        std::unique_ptr<CMivoraKVNPyxenClass> other = MakeGrabber();
        ASSERT_EQ(other->Init(), MV_OK);
        grabber->InstPostProcessCallBack(nullptr, nullptr);
        grabber = std::move(other);
    }
    /// The simulator had time for some more frames.
    void LetFramesCome() {
        platform::Event never;
        never.Wait(200);
    }
    void ExpectNormalWork() {
        ASSERT_EQ(grabber->SetActCameraIndex(0), MV_OK);
        ASSERT_EQ(grabber->OpenActCamera(), MV_OK);
        ASSERT_EQ(grabber->PrepareFrameBuffers(4), MV_OK);
        ASSERT_EQ(grabber->InstPostProcessCallBack(nullptr, nullptr), MV_OK);
        ASSERT_EQ(grabber->Snap(1), MV_OK);
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
    }
};

TEST_F(MemoryOnSimulator, OutlivesADeletedGrabberThatWasNotClosedAtOnce) {
    Run();
    Control("fail PxnCameraClose 1 -20");
    DeleteGrabber();
    LetFramesCome();
    ExpectNormalWork();
}

TEST_F(MemoryOnSimulator, OutlivesADeletedGrabberThatCannotBeClosed) {
    Run();
    Control("fail-always PxnCameraClose -20");
    DeleteGrabber();
    LetFramesCome();
    Control("clear");
    ASSERT_EQ(grabber->RefreshCameraList(), MV_OK);
    ExpectNormalWork();
}

TEST_F(MemoryOnSimulator, ComesBackByCallbacksWhereAStopGetsNothingBack) {
    Run();
    for (const char* const line :
         {"fail-always PxnFeatureCommandRun -20", "fail-always PxnCaptureEnd -20",
          "fail-always PxnCaptureQueueFlush -20", "fail-always PxnFrameRevokeAll -20"}) {
        Control(line);
    }
    EXPECT_EQ(grabber->StopSnap(), MV_OK);
    EXPECT_TRUE(support::WaitUntil([&] { return grabber->PrepareFrameBuffers(0) == MV_OK; }));
    LetFramesCome();
    Control("clear");
}

// All of it may have come back before the camera is opened: then it is used as it is.
TEST_F(MemoryOnSimulator, OfACameraThatWasOpenedAnewWithoutClosingIsPreparedAnewOrBack) {
    for (unsigned round = 0; round < 5 && !HasFailure(); ++round) {
        Run();
        Control("unplug A");
        Control("plug A");
        ASSERT_EQ(grabber->OpenActCamera(), MV_OK);
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
        const MV_ERRCODE answer = grabber->Snap(1);
        if (answer != MV_OK) {
            EXPECT_EQ(answer, MV_BUFFERS_NOT_PREPARED);
            EXPECT_EQ(grabber->Snap(3), MV_BUFFERS_NOT_PREPARED);
            ASSERT_EQ(grabber->PrepareFrameBuffers(4), MV_OK);
            ASSERT_EQ(grabber->Snap(1), MV_OK);
        }
        ExpectMoreFrames();
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
    }
}

} // namespace
