// busy_marks_test.cpp - the marks that acquisitions leave on the feature control dialog
#include "tests/module/acquisition/marked_dialog.h"
#include "tests/module/acquisition/snap_fixture.h"

#include <thread>

namespace {

class BusyMarks : public SnapFixture {
protected:
    void ReadyWithDialog() {
        Ready(1);
        dialog = MarkedDialog::GiveTo(Grabber());
    }

    MarkedDialog* dialog = nullptr;
    const MarkedDialog::Marks once{{true, false}, {false, false}};
};

TEST_F(BusyMarks, AreSetDuringEverySnap) {
    ReadyWithDialog();
    sdk.Data().completeWaitsAtOnce = true;
    EXPECT_EQ(Grabber().Snap(3), MV_OK);
    EXPECT_EQ(dialog->Take(), once);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(dialog->Take(), once);
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(dialog->Take(), once);
    EXPECT_EQ(Grabber().Snap(2), MV_OK);
    EXPECT_EQ(dialog->Take(), once);
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(dialog->Take(), once);
}

TEST_F(BusyMarks, AreClearedOnEveryWayOut) {
    ReadyWithDialog();
    EXPECT_EQ(Grabber().Snap(0), MV_BAD_VALUE);
    EXPECT_EQ(dialog->Take(), once);
    sdk.Fail("PxnFrameAnnounce", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(3), MV_ACQUISITION_FAILED);
    EXPECT_EQ(dialog->Take(), once);
    sdk.Fail("PxnCaptureStart", PxnErrIO);
    EXPECT_EQ(Grabber().Snap(2), MV_ACQUISITION_FAILED);
    EXPECT_EQ(dialog->Take(), once);
    sdk.FailAlways("PxnCaptureEnd", PxnErrIO);
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(dialog->Take(), once);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
    EXPECT_EQ(Grabber().Snap(2), MV_BUFFERS_NOT_PREPARED);
    EXPECT_EQ(dialog->Take(), once);
}

TEST_F(BusyMarks, AreLeftAloneWhenNothingIsDone) {
    ReadyWithDialog();
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    dialog->Take();
    EXPECT_EQ(Grabber().Snap(1), MV_BUSY);
    EXPECT_EQ(dialog->Take(), MarkedDialog::Marks{});
}

TEST_F(BusyMarks, CoverTheStopWithItsPause) {
    ReadyWithDialog();
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    dialog->Take();
    sleep.Shut();
    std::thread stopper([&] { EXPECT_EQ(Grabber().StopSnap(), MV_OK); });
    ASSERT_TRUE(sleep.WaitForSleeper());
    EXPECT_EQ(dialog->Take(), (MarkedDialog::Marks{{true, false}}));
    sleep.Open();
    stopper.join();
    EXPECT_EQ(dialog->Take(), (MarkedDialog::Marks{{false, false}}));
}

TEST_F(BusyMarks, AreKeptWhenACallbackStopsToo) {
    ReadyWithDialog();
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    dialog->Take();
    onHandOver = [&](uint64_t) {
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    };
    sdk.Hold("PxnFeatureCommandRun");
    std::thread stopper([&] { EXPECT_EQ(Grabber().StopSnap(), MV_OK); });
    ASSERT_TRUE(sdk.WaitForCall(stop));
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(dialog->Take(), (MarkedDialog::Marks{{true, false}}));
    sdk.Release("PxnFeatureCommandRun");
    stopper.join();
    EXPECT_EQ(dialog->Take(), (MarkedDialog::Marks{{false, false}}));
}

TEST_F(BusyMarks, CoverTheCleanupWithItsPause) {
    ReadyWithDialog();
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    dialog->Take();
    sleep.Shut();
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sleep.WaitForSleeper());
    EXPECT_EQ(dialog->Take(), (MarkedDialog::Marks{{true, false}}));
    sleep.Open();
    ASSERT_TRUE(support::WaitUntil([&] { return Grabber().GetAcquisitionState() == 0; }));
    EXPECT_EQ(dialog->Take(), (MarkedDialog::Marks{{false, false}}));
}

TEST_F(BusyMarks, AreSetBeforeTheFirstStep) {
    ReadyWithDialog();
    MarkedDialog::Marks seen;
    unsigned looks = 0;
    const auto look = [&] {
        if (++looks == 1) {
            seen = dialog->Take();
        }
    };
    const auto expectSeen = [&] {
        EXPECT_EQ(seen, (MarkedDialog::Marks{{true, false}}));
        dialog->Take();
        looks = 0;
    };
    sdk.OnCall("PxnFrameAnnounce", look);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    expectSeen();
    sdk.OnCall("PxnFeatureCommandRun", look);
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    expectSeen();
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    expectSeen();
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(support::WaitUntil([&] { return Grabber().GetAcquisitionState() == 0; }));
    expectSeen();
}

TEST_F(BusyMarks, SurroundTheModeOfASnapAndEndBeforeThatOfAStop) {
    using Modes = std::vector<uint32_t>;
    ReadyWithDialog();
    sdk.Data().completeWaitsAtOnce = true;
    EXPECT_EQ(Grabber().Snap(3), MV_OK);
    EXPECT_EQ(dialog->TakeModes(), (Modes{0, 0}));
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(dialog->TakeModes(), (Modes{0, 1}));
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(dialog->TakeModes(), (Modes{1, 1}));
    EXPECT_EQ(Grabber().Snap(2), MV_OK);
    EXPECT_EQ(dialog->TakeModes(), (Modes{0, 2}));
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(Grabber().StopSnap(), MV_OK); // waits for the cleanup thread
    EXPECT_EQ(dialog->TakeModes(), (Modes{2, 2}));
}

TEST_F(BusyMarks, AreNotForCamerasWithAnotherDialog) {
    ReadyWithDialog();
    Grabber().GetActCamera()->SetCamCntrlDlgIndex(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(dialog->Take(), MarkedDialog::Marks{});
}

TEST_F(BusyMarks, OutliveAListOfCamerasThatIsMadeAnew) {
    ReadyWithDialog();
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    dialog->Take();
    sleep.Shut();
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sleep.WaitForSleeper());
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
    sleep.Open();
    ASSERT_TRUE(support::WaitUntil([&] { return Grabber().GetAcquisitionState() == 0; }));
    EXPECT_EQ(dialog->Take(), once);
}

} // namespace
