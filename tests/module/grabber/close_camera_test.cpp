// close_camera_test.cpp - closing the open camera
#include "tests/module/grabber_fixture.h"

#include "grabber/mivora_camera_kvn_pyxen.h"

using namespace pyxen;

namespace {

class CloseCamera : public GrabberFixture {
protected:
    /// Brings the saved timing to the current one and reads it, in microseconds.
    std::pair<uint64_t, uint64_t> SavedTiming() {
        Grabber().SetDefaultIodTimerConfigToGrabber();
        uint64_t exposure = 0;
        uint64_t interval = 0;
        Grabber().GetTimerMicroseconds(&exposure, &interval);
        return {exposure, interval};
    }
};

TEST_F(CloseCamera, AnswersThatNoneIsOpenBeforeInit) {
    EXPECT_EQ(Grabber().CloseActCamera(), MV_CAMERA_NOT_OPEN);
    EXPECT_EQ(Log(), Texts{"1 CMivoraKVNPyxenClass::CloseActCamera"});
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(CloseCamera, ReadsTheTimingAndThenCloses) {
    Open();
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Log(), Texts{"1 CMivoraKVNPyxenClass::CloseActCamera"});
    EXPECT_EQ(Calls(), (Texts{"PxnFeatureFloatGet(camera0, \"ExposureTime\")",
                              "PxnFeatureIntGet(camera0, \"AcquisitionFixedIntervalTime\")",
                              "PxnFeatureFloatGet(camera0, \"AcquisitionFrameRate\")",
                              "PxnCameraClose(camera0)"}));
    EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
    EXPECT_EQ(Grabber().CameraHandle(), nullptr);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_CAMERA_NOT_OPEN);
}

TEST_F(CloseCamera, ForgetsWhatIsFollowedInTheCamera) {
    Camera().localDevice.Put(scripted::IntFeature("Width", 0, 0, 1));
    Camera().streams[0].Put(scripted::IntFeature("Width", 0, 0, 1));
    Init();
    for (const PxnHandle handle :
         {scripted::CameraHandle(), scripted::LocalDeviceHandle(), scripted::StreamHandle()}) {
        const auto follow = [&](int& times) {
            return InvalidationHub::Subscribe(Grabber().Api(), InvalidationChannel::kFeatureValue,
                                              handle, "Width", InvalidationEnding::kAtOnce,
                                              [&times](const Invalidation&) { ++times; });
        };
        int before = 0;
        int after = 0;
        ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
        auto old = follow(before);
        EXPECT_TRUE(old);
        EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
        Forget();
        old.Unsubscribe();
        EXPECT_EQ(Calls(), Texts{}) << "a closed handle was asked";
        EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
        old = follow(before);
        EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
        EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
        const auto next = follow(after);
        EXPECT_EQ(sdk.Fire(handle, "Width"), 1u);
        EXPECT_EQ(before, 0);
        EXPECT_EQ(after, 1);
        EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    }
}

TEST_F(CloseCamera, KeepsTheTimingForSaving) {
    Open();
    Camera()["ExposureTime"].floatValue = 12000;
    Camera()["AcquisitionFrameRate"].floatValue = 20;
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(SavedTiming(), (std::pair<uint64_t, uint64_t>{12000, 50000}));
}

TEST_F(CloseCamera, KeepsTheFormerTimingWhereItCannotBeRead) {
    Open();
    Camera()["ExposureTime"].floatValue = 12000;
    Camera()["AcquisitionFrameRate"].floatValue = 20;
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    Camera()["ExposureTime"].readable = false;
    Camera()["AcquisitionFrameRate"].floatValue = 10;
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(SavedTiming(), (std::pair<uint64_t, uint64_t>{12000, 100000}));
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    Camera()["ExposureTime"].readable = true;
    Camera()["ExposureTime"].floatValue = 13000;
    Camera()["AcquisitionFrameRate"].readable = false;
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(SavedTiming(), (std::pair<uint64_t, uint64_t>{13000, 100000}));
}

TEST_F(CloseCamera, EmptiesTheCachesAndTheRecord) {
    Open();
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    for (uint32_t i = 0; i < 5; ++i) {
        EXPECT_EQ(Grabber().GetFeatureCache(i)->GetFeatureCount(), 0u);
        EXPECT_EQ(Grabber().GetFeatureCache(i)->GetModuleName(), nullptr);
    }
    auto* const node = static_cast<CMivoraCameraKVNPyxen*>(Grabber().GetActCamera());
    EXPECT_EQ(node->Record().streamCount, 0u);
    EXPECT_EQ(node->Record().localDeviceHandle, nullptr);
    EXPECT_STREQ(node->Record().cameraIdExtended, "cam-ext-1");
}

TEST_F(CloseCamera, ReportsAFailureUnderItsOldTagAndClosesAllTheSame) {
    Open();
    sdk.Fail("PxnCameraClose", PxnErrIO);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Log(),
              (Texts{
                  "1 CMivoraKVNPyxenClass::CloseActCamera",
                  "0 CMivoraKVNqxAPIClass::CloseActCamera: Low level IO error in transport layer",
              }));
    EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
    EXPECT_EQ(Grabber().CameraHandle(), nullptr);
}

TEST_F(CloseCamera, TriesOnceMoreWhenTheCameraHasVanished) {
    Open();
    sdk.FailAlways("PxnCameraClose", PxnErrBadHandle);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    sdk.ClearCalls();
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(sdk.TakeCalls({"PxnCameraClose"}), Texts{"PxnCameraClose(camera0)"});
    EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
    EXPECT_EQ(sdk.TakeCalls({"PxnCameraClose"}), Texts{});
}

TEST_F(CloseCamera, TriesAgainAndAgainWhenTheSdkRefusesOtherwise) {
    Open();
    sdk.FailAlways("PxnCameraClose", PxnErrIO);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    for (unsigned attempt = 0; attempt < 3; ++attempt) {
        sdk.ClearCalls();
        EXPECT_EQ(Grabber().RefreshCameraList(), MV_OK);
        EXPECT_EQ(sdk.TakeCalls({"PxnCameraClose"}), Texts{"PxnCameraClose(camera0)"});
    }
}

// The SDK gives the handle to the camera again: what was remembered is closed.
TEST_F(CloseCamera, ThatWasDoneAndReportedAsFailedLeavesTheHandleToTheNextOpening) {
    static decltype(&::PxnCameraClose) close = nullptr;
    Open();
    close = Grabber().Api().PxnCameraClose;
    Grabber().Api().PxnCameraClose = [](PxnHandle camera) -> PxnError {
        close(camera);
        return PxnErrIO;
    };
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    Grabber().Api().PxnCameraClose = close;
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    Forget();
    EXPECT_EQ(Grabber().Api().AllocateAndGetCameraList(nullptr), 1u);
    EXPECT_EQ(sdk.Calls({"PxnCameraClose"}), Texts{});
    EXPECT_EQ(sdk.CountOpenCameras(), 1u);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(sdk.CountOpenCameras(), 0u);
}

// As above, but that closing what was remembered fails as well before the next opening.
TEST_F(CloseCamera, ThatFailsAgainLeavesTheHandleToTheNextOpening) {
    static decltype(&::PxnCameraClose) close = nullptr;
    static bool isClosed = false;
    Open();
    close = Grabber().Api().PxnCameraClose;
    isClosed = false;
    Grabber().Api().PxnCameraClose = [](PxnHandle camera) -> PxnError {
        if (!isClosed) {
            close(camera);
        }
        isClosed = true;
        return PxnErrIO;
    };
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    Grabber().Api().PxnCameraClose = close;
    Forget();
    EXPECT_EQ(Grabber().Api().AllocateAndGetCameraList(nullptr), 1u);
    EXPECT_EQ(sdk.Calls({"PxnCameraClose"}), Texts{});
    EXPECT_EQ(sdk.CountOpenCameras(), 1u);
}

TEST_F(CloseCamera, ForgetsThatBuffersWerePrepared) {
    Prepare(2);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Grabber().Snap(1), MV_BUFFERS_NOT_PREPARED);
    EXPECT_NE(Grabber().GetFrameBuffer(1), nullptr);
}

TEST_F(CloseCamera, DropsTheSynchronisationRules) {
    directory.Write(
        "rules.json",
        R"({"SyncFeatures":[{"ModuleName":"Camera","FeatureName":"Width","Dependencies":[{"ModuleName":"Camera","FeatureName":"Height"}]}]})");
    WriteIni("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=rules.json\n");
    Open();
    ASSERT_EQ(Grabber().SyncRules().GetEntries().size(), 1u);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_TRUE(Grabber().SyncRules().GetEntries().empty());
}

TEST_F(CloseCamera, StaysOpenForTheHostUntilTheBaseHasClosed) {
    Open();
    // The base answers 10 to a grabber that says it is closed.
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
}

TEST_F(CloseCamera, AnswersThatNoneIsOpenWhereTheSdkGaveNoHandle) {
    Init();
    const auto realOpen =
        std::exchange(Grabber().Api().PxnCameraOpen,
                      [](const char*, std::uint32_t, PxnHandle* handle) -> PxnError {
                          *handle = nullptr;
                          return PxnErrSuccess;
                      });
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    ASSERT_EQ(Grabber().IsCameraOpen(), 1u);
    ASSERT_STREQ(Grabber().GetFeatureCache(kCameraCache)->GetModuleName(), "Camera");
    ASSERT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
    sdk.ClearCalls();
    EXPECT_EQ(Grabber().CloseActCamera(), MV_CAMERA_NOT_OPEN);
    EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
    EXPECT_EQ(Calls(), Texts{});
    // The rest is done all the same.
    EXPECT_EQ(Grabber().GetFeatureCache(kCameraCache)->GetModuleName(), nullptr);
    Grabber().Api().PxnCameraOpen = realOpen;
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Grabber().Snap(1), MV_BUFFERS_NOT_PREPARED);
}

TEST_F(CloseCamera, IsDoneByInitialisationsEnd) {
    Open();
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnCameraClose", "PxnShutdown"}),
              (Texts{"PxnCameraClose(camera0)", "PxnShutdown()"}));
    EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
}

} // namespace
