// event_recorder_test.cpp - waiting for a grabber's events
#include "apps/common/event_recorder.h"

#include "apps/pyxen-tool/linked_maker.h"
#include "mivora/grabber.h"
#include "platform/window_message.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

class EventRecording : public testing::Test {
protected:
    EventRecording() : grabber(*maker.Create()) {}
    ~EventRecording() override { maker.Delete(&grabber); }

    LinkedMaker maker;
    CMivoraGrabber& grabber;
};

TEST_F(EventRecording, WakesUpForAnEvent) {
    EventRecorder recorder(grabber);
    std::thread raising([this] { grabber.SignalCamCfgChange(); });
    EXPECT_TRUE(recorder.WaitForEvent([&] { return recorder.ConfigurationChanges() > 0; }, 60000));
    raising.join();
    EXPECT_EQ(recorder.Take().camCfgChange, 1u);
}

TEST_F(EventRecording, SleepsBetweenEventsWhereThereAreNoWindowsToServe) {
    EventRecorder recorder(grabber);
    unsigned looks = 0;
    const auto isNever = [&] {
        ++looks;
        return false;
    };
    EXPECT_FALSE(recorder.WaitForEvent(isNever, 300));
    // One at the begin and one at the end, and in between as often as an interruption wants.
    EXPECT_LE(looks, platform::HasMessages() ? 300u : 5u);
    EXPECT_GE(looks, 2u);
}

} // namespace
