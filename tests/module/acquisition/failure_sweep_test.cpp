// failure_sweep_test.cpp - whole runs in which one SDK call after the other fails
#include "tests/module/acquisition/snap_fixture.h"

namespace {

/// The mode of the snap and whether frames are queued before the start.
using Scenario = std::pair<uint32_t, bool>;

class FailureSweep : public SnapFixture, public ::testing::WithParamInterface<Scenario> {
protected:
    void SetUp() override {
        SnapFixture::SetUp();
        sdk.Data().completeWaitsAtOnce = true;
        Camera()["PixelFormat"].text = "Mono12p";
        Camera()["Width"].intValue = 32;
        Camera()["Height"].intValue = 4;
        Camera()["PayloadSize"].intValue = 32 * 4 * 3 / 2;
        directory.Write(
            "rules.json",
            R"({"SyncFeatures":[{"ModuleName":"Camera","FeatureName":"ReverseX","Dependencies":[{"ModuleName":"Localdevice","FeatureName":"ReverseX"}]}]})");
        Camera()["ReverseX"].boolValue = true;
        Camera().localDevice.Put(scripted::BoolFeature("ReverseX", false));
        WriteIni(std::string("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=rules.json\n") +
                 "FirstQueueThenStartSnap=" + (GetParam().second ? "1" : "0") + "\n");
    }

    /// A run from initialising to de-initialising that goes on after every failure; true when
    /// there was none.
    bool Run() {
        const uint32_t mode = GetParam().first;
        bool good = Grabber().Init() == MV_OK;
        good &= Grabber().SetActCameraIndex(0) == MV_OK;
        good &= Grabber().OpenActCamera() == MV_OK;
        good &= Grabber().PrepareFrameBuffers(2) == MV_OK;
        good &= Grabber().Snap(mode) == MV_OK;
        // A single snap takes the first, a synchronous one none.
        good &= sdk.Deliver(0) == (mode < 3);
        good &= sdk.Deliver(1) == (mode == 1);
        good &= sdk.Deliver(0) == (mode == 1);
        good &= Grabber().StopSnap() == MV_OK;
        EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
        good &= Grabber().CloseActCamera() == MV_OK;
        EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
        EXPECT_EQ(Grabber().DeInit(), MV_OK);
        EXPECT_EQ(sdk.StartupCount(), 0);
        EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
        EXPECT_EQ(sdk.Registrations(), std::vector<scripted::Registration>{});
        return good;
    }
};

TEST_P(FailureSweep, LeavesNothingBehindAndTheNextRunWorks) {
    ASSERT_TRUE(Run());
    const std::size_t count = Calls().size();
    ASSERT_GT(count, 40u);
    for (unsigned nth = 1; nth <= count; ++nth) {
        sdk.Fail("", PxnErrIO, nth);
        Run();
        const Texts calls = sdk.Calls();
        const std::string failed = nth <= calls.size() ? calls[nth - 1] : "none";
        sdk.ClearFailures();
        EXPECT_TRUE(Run()) << "after call " << nth << " had failed: " << failed;
        Forget();
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, FailureSweep,
                         ::testing::Values(Scenario{1, false}, Scenario{1, true},
                                           Scenario{2, false}, Scenario{2, true},
                                           Scenario{3, false}));

} // namespace
