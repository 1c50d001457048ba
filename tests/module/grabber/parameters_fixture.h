// parameters_fixture.h - the numbered parameters of a grabber with an open camera
#pragma once

#include "tests/module/grabber_fixture.h"

#include <cstdint>
#include <string>
#include <vector>

using Values = std::vector<uint64_t>;

inline constexpr uint64_t kAllBits = ~uint64_t{0};
inline constexpr uint64_t kUntouched = 0xABCD;
inline constexpr int32_t kMilliseconds = -3; // exponents of the time base
inline constexpr int32_t kMicroseconds = -6;

/// Reads and sets the timing values that the host keeps for its grabbers.
struct HostTiming : CMivoraGrabber {
    static void SetSaved(CMivoraGrabber& grabber, uint32_t exposure, uint32_t interval) {
        (grabber.*(&HostTiming::SetSavedExposure))(exposure);
        (grabber.*(&HostTiming::SetSavedInterval))(interval);
    }
    static void SetBase(CMivoraGrabber& grabber, int32_t exponent) {
        (grabber.*(&HostTiming::SetTimeBase))(exponent);
    }
    /// Exposure, interval, time base and then their saved copies.
    static std::vector<int64_t> All(const CMivoraGrabber& grabber) {
        return {(grabber.*(&HostTiming::GetExposureValue))(),
                (grabber.*(&HostTiming::GetIntervalValue))(),
                (grabber.*(&HostTiming::GetTimeBase))(),
                (grabber.*(&HostTiming::GetSavedExposure))(),
                (grabber.*(&HostTiming::GetSavedInterval))(),
                (grabber.*(&HostTiming::GetSavedTimeBase))()};
    }
};

/// The parameters of a grabber whose camera is open.
class ParametersFixture : public GrabberFixture {
protected:
    void SetUp() override {
        GrabberFixture::SetUp();
        Open();
        grabber = &Grabber();
        grabber->InstDialogUpdateCallBack(
            [](uint32_t mask, void* context) {
                static_cast<ParametersFixture*>(context)->events.push_back("update " +
                                                                           std::to_string(mask));
            },
            this);
        grabber->InstCamCntrlCallBack(
            [](uint32_t code, void* context) -> uint32_t {
                static_cast<ParametersFixture*>(context)->events.push_back("event " +
                                                                           std::to_string(code));
                return 1;
            },
            this);
    }
    void TearDown() override {
        grabber->InstDialogUpdateCallBack(nullptr, nullptr);
        grabber->InstCamCntrlCallBack(nullptr, nullptr);
        GrabberFixture::TearDown();
    }

    /// Result and values.
    Values Get(uint32_t id) {
        uint64_t first = kUntouched;
        uint64_t second = kUntouched;
        const MV_ERRCODE result = grabber->GetGrabberParam(id, &first, &second);
        return {static_cast<uint64_t>(result), first, second};
    }
    Values Limits(uint32_t id) {
        uint64_t out[4] = {kUntouched, kUntouched, kUntouched, kUntouched};
        const MV_ERRCODE result =
            grabber->GetGrabberParamLimits(id, &out[0], &out[1], &out[2], &out[3]);
        return {static_cast<uint64_t>(result), out[0], out[1], out[2], out[3]};
    }
    uint64_t Result(const Values& values) { return values.front(); }

    void PutInterval(int64_t value, int64_t min, int64_t max) {
        Camera().Put(scripted::IntFeature("AcquisitionFixedIntervalTime", value, min, max));
    }
    void PutExposure(double value, double min, double max) {
        Camera().Put(scripted::FloatFeature("ExposureTime", value, min, max));
    }
    void PutRate(double value, double min, double max) {
        Camera().Put(scripted::FloatFeature("AcquisitionFrameRate", value, min, max));
    }
    void SetBase(int32_t exponent) { HostTiming::SetBase(*grabber, exponent); }
    uint32_t Exposure() {
        uint32_t value = 0;
        EXPECT_TRUE(grabber->GetExposureTime(&value));
        return value;
    }
    uint32_t Interval() {
        uint32_t value = 0;
        EXPECT_TRUE(grabber->GetFrameInterval(&value));
        return value;
    }

    CMivoraKVNPyxenClass* grabber = nullptr;
    Texts events;
};
