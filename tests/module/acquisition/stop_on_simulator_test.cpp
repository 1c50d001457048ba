// stop_on_simulator_test.cpp - stopping inside the callback of a library that allows little there
#include "platform/event.h"
#include "tests/module/simulator_grabber_fixture.h"

namespace {

class StopOnSimulator : public SimulatorGrabberFixture {
protected:
    /// Runs until the callback of the third frame has stopped, while others wait in the queue.
    void StopInsideACallback() {
        stopAt = 3;
        ASSERT_EQ(grabber->Snap(1), MV_OK);
        ASSERT_TRUE(stopped.Wait(10000));
        ASSERT_EQ(grabber->GetAcquisitionState(), 0u);
        stopAt = 0;
    }
    void ExpectFrames() {
        ASSERT_EQ(grabber->Snap(1), MV_OK);
        ExpectMoreFrames();
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
    }

private:
    void OnFrame() override {
        if (frames == stopAt) {
            EXPECT_EQ(grabber->StopSnap(), MV_OK);
            stopped.Set();
        }
    }

    platform::Event stopped;
    std::atomic<unsigned> stopAt{0};
};

TEST_F(StopOnSimulator, InsideTheCallbackDoesNotHinderTheNextSnap) {
    StopInsideACallback();
    ExpectFrames();
}

TEST_F(StopOnSimulator, InsideTheCallbackLeavesNoFrameWhoseMemoryIsFreed) {
    StopInsideACallback();
    EXPECT_EQ(grabber->PrepareFrameBuffers(0), MV_OK);
    EXPECT_EQ(grabber->PrepareFrameBuffers(2), MV_OK);
    ExpectFrames();
}

} // namespace
