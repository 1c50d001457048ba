// failure_sweep_test.cpp - whole runs in which one SDK call after the other fails
#include "tests/module/acquisition/snap_fixture.h"

#include <ostream>

namespace {

/// What the operations of a run answered.
struct Outcome {
    MV_ERRCODE init = MV_OK;
    MV_ERRCODE activate = MV_OK;
    MV_ERRCODE open = MV_OK;
    MV_ERRCODE prepare = MV_OK;
    MV_ERRCODE snap = MV_OK;
    MV_ERRCODE stop = MV_OK;
    MV_ERRCODE close = MV_OK;
    bool delivered = true; ///< the frames came that the mode asks for

    bool operator==(const Outcome&) const = default;
    friend std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
        return stream << "init " << outcome.init << " activate " << outcome.activate << " open "
                      << outcome.open << " prepare " << outcome.prepare << " snap " << outcome.snap
                      << " stop " << outcome.stop << " close " << outcome.close << " delivered "
                      << outcome.delivered;
    }
};

struct Scenario {
    uint32_t mode;                           ///< of the snap
    bool isQueuedFirst;                      ///< frames are queued before the start
    bool areUnannouncedFramesQueued = false; ///< by an SDK that does not keep what it promises
};

class FailureSweep : public SnapFixture, public ::testing::WithParamInterface<Scenario> {
protected:
    void SetUp() override {
        SnapFixture::SetUp();
        sdk.Data().completeWaitsAtOnce = true;
        sdk.Data().broken.unannouncedFramesAreQueued = GetParam().areUnannouncedFramesQueued;
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
                 "FirstQueueThenStartSnap=" + (GetParam().isQueuedFirst ? "1" : "0") + "\n");
    }

    /// A run from initialising to de-initialising that goes on after every failure.
    Outcome Run() {
        const uint32_t mode = GetParam().mode;
        Outcome outcome;
        outcome.init = Grabber().Init();
        outcome.activate = Grabber().SetActCameraIndex(0);
        outcome.open = Grabber().OpenActCamera();
        callsUntilOpen = sdk.Calls().size();
        outcome.prepare = Grabber().PrepareFrameBuffers(2);
        callsUntilPrepared = sdk.Calls().size();
        outcome.snap = Grabber().Snap(mode);
        callsUntilSnapped = sdk.Calls().size();
        // A single snap takes the first, a synchronous one none.
        const bool first = sdk.Deliver(0);
        const bool second = sdk.Deliver(1);
        const bool again = sdk.Deliver(0);
        outcome.delivered = first == (mode < 3) && second == (mode == 1) && again == (mode == 1);
        outcome.stop = Grabber().StopSnap();
        EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
        outcome.close = Grabber().CloseActCamera();
        EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
        EXPECT_EQ(Grabber().DeInit(), MV_OK);
        EXPECT_EQ(sdk.StartupCount(), 0);
        EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
        EXPECT_EQ(sdk.Registrations(), std::vector<scripted::Registration>{});
        return outcome;
    }

    /// Checks the results of a run in which the nth call had failed.
    void ExpectDocumented(const Outcome& outcome, const std::string& call, std::size_t nth) {
        const auto isCall = [&](const char* entry) {
            return call.rfind(entry, 0) == 0;
        };
        Outcome expected;
        expected.delivered = outcome.delivered;
        if (nth <= callsUntilOpen) {
            if (isCall("PxnStartup")) {
                expected = {MV_REFUSED,         MV_NO_CAMERA,       MV_NOT_INITIALISED,
                            MV_NOT_INITIALISED, MV_NOT_INITIALISED, MV_NOT_INITIALISED,
                            MV_CAMERA_NOT_OPEN, outcome.delivered};
            } else if (isCall("PxnCamerasList")) {
                expected.activate = expected.open = expected.snap = MV_NO_CAMERA;
                expected.prepare = expected.close = MV_CAMERA_NOT_OPEN;
            } else if (isCall("PxnCameraOpen")) {
                expected.open = MV_REFUSED;
                expected.prepare = expected.snap = expected.close = MV_CAMERA_NOT_OPEN;
            }
        } else if (nth <= callsUntilPrepared) {
            // Whether the size of the image is still known depends on which reading failed.
            expected.prepare = isCall("PxnFeatureEnumGet") ? MV_REFUSED : outcome.prepare;
            EXPECT_TRUE(outcome.prepare == MV_OK || outcome.prepare == MV_REFUSED);
            expected.snap = expected.prepare == MV_OK ? MV_OK : MV_BUFFERS_NOT_PREPARED;
        } else if (nth <= callsUntilSnapped) {
            const bool isContinuous = GetParam().mode == 1;
            const bool isForgiven =
                isContinuous &&
                (isCall("PxnCaptureStart") ||
                 (isCall("PxnFrameAnnounce") && GetParam().areUnannouncedFramesQueued));
            const bool isBehindTheFrame = call == stop || isCall("PxnCaptureEnd");
            expected.snap = isForgiven || isBehindTheFrame ? MV_OK : MV_ACQUISITION_FAILED;
        }
        EXPECT_EQ(outcome, expected) << "call " << nth << " had failed: " << call;
    }

    std::size_t callsUntilOpen = 0;
    std::size_t callsUntilPrepared = 0;
    std::size_t callsUntilSnapped = 0;
};

TEST_P(FailureSweep, GivesTheDocumentedResultsAndLeavesNothingBehindAndTheNextRunWorks) {
    ASSERT_EQ(Run(), Outcome());
    const std::size_t count = Calls().size();
    ASSERT_GT(count, 40u);
    for (unsigned nth = 1; nth <= count; ++nth) {
        sdk.Fail("", PxnErrIO, nth);
        const Outcome outcome = Run();
        const Texts calls = sdk.Calls();
        const std::string failed = nth <= calls.size() ? calls[nth - 1] : "none";
        sdk.ClearFailures();
        ExpectDocumented(outcome, failed, nth);
        Forget();
        EXPECT_EQ(Run(), Outcome()) << "after call " << nth << " had failed: " << failed;
        Forget();
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, FailureSweep,
                         ::testing::Values(Scenario{1, false}, Scenario{1, true},
                                           Scenario{1, false, true}, Scenario{1, true, true},
                                           Scenario{2, false}, Scenario{2, true},
                                           Scenario{3, false}, Scenario{4, false},
                                           Scenario{5, true}));

} // namespace
