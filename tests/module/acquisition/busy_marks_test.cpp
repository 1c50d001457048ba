// busy_marks_test.cpp - the marks that acquisitions leave on the feature control dialog
#include "tests/module/acquisition/snap_fixture.h"

#include <thread>

namespace {

using Marks = std::vector<std::pair<bool, bool>>;

class MarkedDialog : public ICamCntrlDialog {
public:
    explicit MarkedDialog(CMivoraGrabber& owner) : grabber(owner) {}

    void Show() override {}
    void Hide() override {}
    bool IsVisible() const override { return false; }
    void Update(uint32_t) override {}
    void SetAcquisitionMarks(bool suppressBufferFormat, bool suppressSync) override {
        const platform::MutexLock lock(mutex);
        marks.emplace_back(suppressBufferFormat, suppressSync);
        modes.push_back(grabber.GetAcquisitionState());
    }

    Marks Take() {
        const platform::MutexLock lock(mutex);
        return std::exchange(marks, {});
    }
    /// The mode of the acquisition at each call.
    std::vector<uint32_t> TakeModes() {
        const platform::MutexLock lock(mutex);
        return std::exchange(modes, {});
    }

private:
    CMivoraGrabber& grabber;
    platform::Mutex mutex;
    Marks marks GUARDED_BY(mutex);
    std::vector<uint32_t> modes GUARDED_BY(mutex);
};

/// Reaches what a grabber keeps for its module.
struct DialogHolder : CMivoraGrabber {
    static void Give(CMivoraGrabber& grabber, ICamCntrlDialog* dialog) {
        (grabber.*(&DialogHolder::SetCamCntrlDialogObject))(dialog);
    }
};

class BusyMarks : public SnapFixture {
protected:
    void ReadyWithDialog() {
        Ready(1);
        dialog = new MarkedDialog(Grabber()); // the grabber's from here on
        DialogHolder::Give(Grabber(), dialog);
    }

    MarkedDialog* dialog = nullptr;
    const Marks once{{true, false}, {false, false}};
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
    EXPECT_EQ(dialog->Take(), Marks{});
}

TEST_F(BusyMarks, CoverTheStopWithItsPause) {
    ReadyWithDialog();
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    dialog->Take();
    sleep.Shut();
    std::thread stopper([&] { EXPECT_EQ(Grabber().StopSnap(), MV_OK); });
    ASSERT_TRUE(sleep.WaitForSleeper());
    EXPECT_EQ(dialog->Take(), (Marks{{true, false}}));
    sleep.Open();
    stopper.join();
    EXPECT_EQ(dialog->Take(), (Marks{{false, false}}));
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
    EXPECT_EQ(dialog->Take(), (Marks{{true, false}}));
    sdk.Release("PxnFeatureCommandRun");
    stopper.join();
    EXPECT_EQ(dialog->Take(), (Marks{{false, false}}));
}

TEST_F(BusyMarks, CoverTheCleanupWithItsPause) {
    ReadyWithDialog();
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    dialog->Take();
    sleep.Shut();
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sleep.WaitForSleeper());
    EXPECT_EQ(dialog->Take(), (Marks{{true, false}}));
    sleep.Open();
    ASSERT_TRUE(support::WaitUntil([&] { return Grabber().GetAcquisitionState() == 0; }));
    EXPECT_EQ(dialog->Take(), (Marks{{false, false}}));
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
    EXPECT_EQ(dialog->Take(), Marks{});
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
