// parameters_alone_test.cpp - the numbered parameters without a grabber
#include "grabber/parameters.h"

#include "sdk/camera_features.h"
#include "tests/module/sdk/loaded_api.h"

using namespace pyxen;

namespace {

constexpr std::int32_t kInMicroseconds = -6; // exponents of the time base
constexpr std::int32_t kInMilliseconds = -3;

class FakeParameterHost final : public IParameterHost {
public:
    MV_ERRCODE CheckTimerState() const override { return state; }
    uint64_t GetFramesReceived() const override { return 17; }
    uint32_t GetTimerMode() const override { return 3; }
    uint32_t GetTimerEnabled() const override { return 5; }
    uint32_t GetExposure() const override { return exposure; }
    uint32_t GetInterval() const override { return interval; }
    int32_t GetTimeBase() const override { return timeBase; }
    void SetExposure(uint32_t value) override { exposure = value; }
    void SetInterval(uint32_t value) override { interval = value; }
    void SetTimeBase(int32_t exponent) override { timeBase = exponent; }
    uint32_t GetSavedExposure() const override { return savedExposure; }
    uint32_t GetSavedInterval() const override { return savedInterval; }
    void SetSavedExposure(uint32_t value) override { savedExposure = value; }
    void SetSavedInterval(uint32_t value) override { savedInterval = value; }
    void SetSavedTimeBase(int32_t exponent) override { savedTimeBase = exponent; }

    MV_ERRCODE state = MV_OK;
    uint32_t exposure = 0;
    uint32_t interval = 0;
    int32_t timeBase = kInMicroseconds;
    uint32_t savedExposure = 0;
    uint32_t savedInterval = 0;
    int32_t savedTimeBase = kInMicroseconds;
};

// Without an open camera, or with the scripted one.
class ParametersAlone : public LoadedApi, private ICameraFeatures {
protected:
    CPyxenAPIAccess& Api() override { return api; }
    PxnHandle CameraHandle() const override { return camera; }
    Logger Log() const override { return {}; }

    void UseCamera(double exposure) {
        sdk.Data().cameras[0].Put(scripted::FloatFeature("ExposureTime", exposure, 0, 1000000));
        camera = scripted::CameraHandle();
    }

    PxnHandle camera = nullptr;
    FakeParameterHost host;
    Parameters parameters{*this, host};
};

TEST_F(ParametersAlone, LeaveToTheHostWhatTheyDoNotServe) {
    for (const uint32_t id : {2u, 128u, 255u, 4097u}) {
        EXPECT_EQ(parameters.Get(id, nullptr, nullptr), std::nullopt) << id;
        EXPECT_EQ(parameters.GetLimits(id, nullptr, nullptr, nullptr, nullptr), std::nullopt) << id;
        EXPECT_EQ(parameters.Set(id, {}, 0, 0), std::nullopt) << id;
    }
    uint64_t value = 0;
    EXPECT_EQ(parameters.Get(MVGF_FRAMES_RECEIVED, &value, nullptr), MV_OK);
    EXPECT_EQ(value, 17u);
}

TEST_F(ParametersAlone, AreNotServedInAnotherState) {
    host.state = MV_CAMERA_NOT_OPEN;
    EXPECT_EQ(parameters.Get(MVGF_TIME_BASE, nullptr, nullptr), MV_CAMERA_NOT_OPEN);
    EXPECT_EQ(parameters.GetLimits(MVGF_TIME_BASE, nullptr, nullptr, nullptr, nullptr),
              MV_CAMERA_NOT_OPEN);
}

TEST_F(ParametersAlone, WithoutACameraNothingIsReadOrStored) {
    uint32_t value = 7;
    EXPECT_FALSE(parameters.ReadExposure(&value));
    EXPECT_FALSE(parameters.ReadInterval(&value));
    EXPECT_EQ(value, 7u);
    EXPECT_FALSE(parameters.StoreIfChanged("ExposureTime"));
    parameters.KeepForSaving();
    EXPECT_EQ(host.savedExposure, 0u);
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(ParametersAlone, OfAnUnloadedSdkNothingIsRead) {
    UseCamera(1000);
    api.Unload();
    uint32_t value = 0;
    EXPECT_FALSE(parameters.ReadExposure(&value));
    EXPECT_FALSE(parameters.ReadInterval(&value));
}

TEST_F(ParametersAlone, StoreAChangedExposureOnce) {
    UseCamera(2500);
    host.timeBase = -4;
    EXPECT_TRUE(parameters.StoreIfChanged("exposuretime"));
    EXPECT_EQ(host.exposure, 25u);
    EXPECT_EQ(host.savedExposure, 25u);
    EXPECT_FALSE(parameters.StoreIfChanged("ExposureTime"));
    EXPECT_FALSE(parameters.StoreIfChanged(nullptr));
}

TEST_F(ParametersAlone, ConvertMicrosecondsWithTheTimeBase) {
    host.timeBase = kInMilliseconds;
    uint32_t exposure = 0;
    uint32_t interval = 0;
    EXPECT_FALSE(parameters.SaveMicroseconds(5000, 5000, exposure, interval));
    EXPECT_TRUE(parameters.SaveMicroseconds(5000, 40999, exposure, interval));
    EXPECT_EQ(exposure, 5u);
    EXPECT_EQ(interval, 40u);
    EXPECT_EQ(host.savedExposure, 5u);
    EXPECT_EQ(host.savedInterval, 40u);
    EXPECT_EQ(host.savedTimeBase, kInMilliseconds);
    EXPECT_EQ(host.exposure, 0u);
}

} // namespace
