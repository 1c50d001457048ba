// acquisition_events_test.cpp - the events that a snap needs and resets
#include "tests/module/acquisition/acquisition_insides.h"
#include "tests/module/acquisition/marked_dialog.h"
#include "tests/module/acquisition/snap_fixture.h"

namespace {

class AcquisitionEvents : public SnapFixture {
protected:
    /// A frame that is none of the grabber's comes back.
    void ReceiveBadFrame() {
        PxnFrame frame{};
        frame.receiveStatus = PxnFrameStatusIncomplete;
        Grabber().FrameCallback(&frame);
    }
    /// The stop event is set, nothing is recorded.
    void ReadyAfterAStop() {
        Ready(1);
        ASSERT_EQ(Grabber().Snap(1), MV_OK);
        ASSERT_TRUE(sdk.Deliver(0));
        ASSERT_TRUE(sdk.Deliver(0));
        ASSERT_EQ(Grabber().StopSnap(), MV_OK);
        Forget();
    }
};

TEST_F(AcquisitionEvents, OfTheHostAreResetByEverySnap) {
    Ready(1);
    sdk.Data().completeWaitsAtOnce = true;
    for (const uint32_t mode : {1u, 2u, 3u, 4u, 5u}) {
        AcquisitionInsides::Event(Grabber(), 0)->Set();
        AcquisitionInsides::Event(Grabber(), 1)->Set();
        unsigned looks = 0;
        sdk.OnCall("PxnFrameAnnounce", [&] {
            ++looks;
            EXPECT_FALSE(AcquisitionInsides::Event(Grabber(), 0)->IsSet()) << mode;
            EXPECT_FALSE(AcquisitionInsides::Event(Grabber(), 1)->IsSet()) << mode;
        });
        EXPECT_EQ(Grabber().Snap(mode), MV_OK);
        EXPECT_EQ(looks, 1u);
        ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    }
}

TEST_F(AcquisitionEvents, OfTheHostAreKeptByARefusedSnap) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    AcquisitionInsides::Event(Grabber(), 0)->Set();
    AcquisitionInsides::Event(Grabber(), 1)->Set();
    EXPECT_EQ(Grabber().Snap(1), MV_BUSY);
    EXPECT_TRUE(AcquisitionInsides::Event(Grabber(), 0)->IsSet());
    EXPECT_TRUE(AcquisitionInsides::Event(Grabber(), 1)->IsSet());
}

TEST_F(AcquisitionEvents, AreMissedBeforeTheDialogIsMarked) {
    Ready(1);
    MarkedDialog* const dialog = MarkedDialog::GiveTo(Grabber());
    for (std::unique_ptr<platform::Event>* const event :
         {&AcquisitionInsides::Event(Grabber(), 0), &AcquisitionInsides::Event(Grabber(), 1),
          &AcquisitionInsides::StopEvent(Grabber())}) {
        std::unique_ptr<platform::Event> kept = std::exchange(*event, nullptr);
        for (uint32_t mode = 0; mode < 7; ++mode) {
            EXPECT_EQ(Grabber().Snap(mode), MV_ACQUISITION_FAILED) << mode;
        }
        *event = std::move(kept);
    }
    EXPECT_EQ(dialog->Take(), MarkedDialog::Marks{});
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
}

TEST_F(AcquisitionEvents, OfAStopIsResetBeforeTheFirstCallOfASnap) {
    ReadyAfterAStop();
    sdk.OnCall("PxnFrameAnnounce", [&] {
        ReceiveBadFrame();
        EXPECT_EQ(sdk.Calls({"PxnCaptureFrameQueue"}), Texts{Queue(0)});
    });
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCaptureFrameQueue"}), (Texts{Queue(0), Queue(0)}));
}

TEST_F(AcquisitionEvents, OfAStopIsLeftAloneByASynchronousSnap) {
    ReadyAfterAStop();
    sdk.Data().completeWaitsAtOnce = true;
    for (const uint32_t mode : {3u, 4u, 5u}) {
        ASSERT_EQ(Grabber().Snap(mode), MV_OK);
        Forget();
        Grabber().SetAcquisitionState(1);
        ReceiveBadFrame();
        EXPECT_EQ(Calls(), Texts{}) << mode;
        Grabber().SetAcquisitionState(0);
    }
}

TEST_F(AcquisitionEvents, FindTheCounterAtZeroAtTheFirstCallOfASnap) {
    for (const uint32_t mode : {1u, 2u}) {
        ReadyAfterAStop();
        ASSERT_EQ(FramesReceived(), 2u);
        unsigned looks = 0;
        sdk.OnCall("PxnFrameAnnounce", [&] {
            ++looks;
            EXPECT_EQ(FramesReceived(), 0u) << mode;
        });
        EXPECT_EQ(Grabber().Snap(mode), MV_OK);
        EXPECT_EQ(looks, 1u);
        Destroy();
        sdk.Reset();
    }
}

} // namespace
