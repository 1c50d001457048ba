// grabber_parameters_test.cpp - parameters, bits, features and timer of a grabber
#include "tests/host/test_grabber.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

constexpr std::uint64_t kUntouched = 0xDEADBEEF;
constexpr std::uint64_t kAll64 = ~std::uint64_t{0};
constexpr std::uint64_t kMinusSix = static_cast<std::uint64_t>(std::int64_t{-6});

class Parameters : public testing::Test {
protected:
    void ExpectValue(std::uint32_t id, MV_ERRCODE code, std::uint64_t first, std::uint64_t second) {
        std::uint64_t value1 = kUntouched;
        std::uint64_t value2 = kUntouched;
        EXPECT_EQ(grabber.GetGrabberParam(id, &value1, &value2), code) << id;
        EXPECT_EQ(value1, first) << id;
        EXPECT_EQ(value2, second) << id;
        EXPECT_EQ(grabber.GetGrabberParam(id, nullptr, nullptr), code) << id;
    }

    void ExpectLimits(std::uint32_t id, MV_ERRCODE code, std::vector<std::uint64_t> expected) {
        std::vector<std::uint64_t> limits(4, kUntouched);
        EXPECT_EQ(grabber.GetGrabberParamLimits(id, &limits[0], &limits[1], &limits[2], &limits[3]),
                  code)
            << id;
        EXPECT_EQ(limits, expected) << id;
        EXPECT_EQ(grabber.GetGrabberParamLimits(id, nullptr, nullptr, nullptr, nullptr), code);
    }

    TestGrabber grabber;
};

constexpr std::uint32_t kNotServedByTheBase[] = {0,   2,   127, 129, 255, 259,  260,
                                                 262, 263, 264, 265, 267, 4096, 0xFFFFFFFFu};

TEST_F(Parameters, AreReadByTheirIds) {
    ExpectValue(MVGF_FRAME_BUFFER_COUNT, MV_OK, 1, 0);
    ExpectValue(MVGF_ACQUISITION_CAPABILITIES, MV_OK, 7, 0);
    ExpectValue(MVGF_TIMER_MODE, MV_OK, 0, 0);
    ExpectValue(MVGF_TIMER_VALUES, MV_OK, 0, 0);
    ExpectValue(MVGF_TIMER_ENABLED, MV_OK, 0, 0);
    ExpectValue(MVGF_TIME_BASE, MV_OK, kMinusSix, 0);
    for (const std::uint32_t id : kNotServedByTheBase) {
        ExpectValue(id, MV_NOT_SERVED, 0, 0);
    }
}

TEST_F(Parameters, HaveLimits) {
    ExpectLimits(MVGF_FRAME_BUFFER_COUNT, MV_OK, {1, kAll64, 0, 0});
    ExpectLimits(MVGF_ACQUISITION_CAPABILITIES, MV_NOT_SERVED, {0, 0, 0, 0});
    ExpectLimits(MVGF_TIMER_MODE, MV_OK, {0, 0xFFFFFFFFu, 0, 0});
    ExpectLimits(MVGF_TIMER_VALUES, MV_OK, {0, 0xFFFFFFFFu, 0, 0xFFFFFFFFu});
    ExpectLimits(MVGF_TIMER_ENABLED, MV_OK, {0, 1, 0, 0});
    ExpectLimits(MVGF_TIME_BASE, MV_OK, {kMinusSix, 0, 0, 0});
    for (const std::uint32_t id : kNotServedByTheBase) {
        ExpectLimits(id, MV_NOT_SERVED, {0, 0, 0, 0});
    }
}

TEST_F(Parameters, StoreTheirValues) {
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_FRAME_BUFFER_COUNT, 16, 0), MV_OK);
    ExpectValue(MVGF_FRAME_BUFFER_COUNT, MV_OK, 16, 0);
    EXPECT_EQ(grabber.GetRequestedBufferCount(), 16u);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIMER_MODE, 3, 0), MV_OK);
    ExpectValue(MVGF_TIMER_MODE, MV_OK, 3, 0);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIMER_VALUES, 20, 40), MV_OK);
    ExpectValue(MVGF_TIMER_VALUES, MV_OK, 20, 40);
    EXPECT_EQ(grabber.GetSavedExposure(), 0u);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIMER_ENABLED, 1, 0), MV_OK);
    ExpectValue(MVGF_TIMER_ENABLED, MV_OK, 1, 0);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIMER_ENABLED, 0, 0), MV_OK);
    ExpectValue(MVGF_TIMER_ENABLED, MV_OK, 0, 0);
}

TEST_F(Parameters, RefuseValuesOutsideTheirLimits) {
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_FRAME_BUFFER_COUNT, 0, 0), MV_BAD_VALUE);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_FRAME_BUFFER_COUNT, 1, 1), MV_BAD_VALUE);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIMER_MODE, 0x100000000u, 0), MV_BAD_VALUE);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIMER_VALUES, 0x100000000u, 0), MV_BAD_VALUE);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIMER_VALUES, 0, 0x100000000u), MV_BAD_VALUE);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIMER_ENABLED, 2, 0), MV_BAD_VALUE);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIME_BASE, 1, 0), MV_BAD_VALUE);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIME_BASE, kMinusSix - 1, 0), MV_BAD_VALUE);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIME_BASE, 0, 1), MV_BAD_VALUE);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_ACQUISITION_CAPABILITIES, 1, 0), MV_NOT_SERVED);
    for (const std::uint32_t id : kNotServedByTheBase) {
        EXPECT_EQ(grabber.SetGrabberParam(id, 1, 0), MV_NOT_SERVED) << id;
    }
    ExpectValue(MVGF_FRAME_BUFFER_COUNT, MV_OK, 1, 0);
    ExpectValue(MVGF_TIMER_VALUES, MV_OK, 0, 0);
    ExpectValue(MVGF_TIME_BASE, MV_OK, kMinusSix, 0);
}

TEST_F(Parameters, AreConvertedWhenTheTimeBaseChanges) {
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIMER_VALUES, 20001, 4000000000u), MV_OK);
    grabber.SetSavedExposure(5999);
    grabber.SetSavedInterval(7);
    EXPECT_EQ(
        grabber.SetGrabberParam(MVGF_TIME_BASE, static_cast<std::uint64_t>(std::int64_t{-3}), 0),
        MV_OK);
    ExpectValue(MVGF_TIMER_VALUES, MV_OK, 20, 4000000);
    EXPECT_EQ(grabber.GetSavedExposure(), 5u);
    EXPECT_EQ(grabber.GetSavedInterval(), 0u);
    EXPECT_EQ(grabber.GetTimeBase(), -3);
    EXPECT_EQ(grabber.GetSavedTimeBase(), -3);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIME_BASE, kMinusSix, 0), MV_OK);
    ExpectValue(MVGF_TIMER_VALUES, MV_OK, 20000, 4000000000u);
    // Values too large for the smaller unit are limited to 32 bits.
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIME_BASE, 0, 0), MV_OK);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIMER_VALUES, 1, 5000), MV_OK);
    EXPECT_EQ(grabber.SetGrabberParam(MVGF_TIME_BASE, kMinusSix, 0), MV_OK);
    ExpectValue(MVGF_TIMER_VALUES, MV_OK, 1000000, 0xFFFFFFFFu);
}

struct Masks {
    std::vector<std::uint32_t> seen;
};

class Timer : public Parameters {
protected:
    Timer() {
        grabber.InstDialogUpdateCallBack(
            [](std::uint32_t mask, void* context) {
                static_cast<Masks*>(context)->seen.push_back(mask);
            },
            &masks);
    }

    Masks masks;
};

TEST_F(Timer, NotifiesTheDialogsWhenItStartsAndStops) {
    EXPECT_EQ(grabber.StartTimer(), MV_OK);
    EXPECT_EQ(grabber.GetTimerEnabled(), 1u);
    EXPECT_EQ(grabber.StopTimer(), MV_OK);
    EXPECT_EQ(grabber.GetTimerEnabled(), 0u);
    EXPECT_EQ(masks.seen, std::vector<std::uint32_t>({kMvUpdateTimer, kMvUpdateTimer}));
}

TEST_F(Timer, StoresTheArgumentsOfChangeTimerTB) {
    EXPECT_EQ(grabber.ChangeTimerTB(4000000000u, 3, 2), MV_OK);
    EXPECT_EQ(grabber.GetExposureValue(), 4000000000u);
    EXPECT_EQ(grabber.GetIntervalValue(), 3u);
    EXPECT_EQ(grabber.GetTimerEnabled(), 2u);
    ExpectValue(MVGF_TIMER_ENABLED, MV_OK, 1, 0);
    EXPECT_EQ(masks.seen, std::vector<std::uint32_t>({kMvUpdateTimer}));
}

TEST_F(Timer, CopiesSavedValuesToTheCurrentOnesAndBack) {
    grabber.SetSavedExposure(1);
    grabber.SetSavedInterval(2);
    grabber.SetSavedTimeBase(-3);
    EXPECT_EQ(grabber.SetDefaultIodTimerConfigToGrabber(), MV_OK);
    EXPECT_EQ(grabber.GetExposureValue(), 1u);
    EXPECT_EQ(grabber.GetIntervalValue(), 2u);
    EXPECT_EQ(grabber.GetTimeBase(), -3);
    grabber.SetExposureValue(4);
    grabber.SetIntervalValue(5);
    grabber.SetTimeBase(-1);
    EXPECT_EQ(grabber.GetSavedExposure(), 1u);
    EXPECT_EQ(grabber.GetDefaultIodTimerConfigFromGrabber(), MV_OK);
    EXPECT_EQ(grabber.GetSavedExposure(), 4u);
    EXPECT_EQ(grabber.GetSavedInterval(), 5u);
    EXPECT_EQ(grabber.GetSavedTimeBase(), -1);
    EXPECT_TRUE(masks.seen.empty());
}

TEST(GrabberBits, AreThirtyTwo) {
    TestGrabber grabber;
    std::uint32_t value = 9;
    for (std::uint32_t bit = 0; bit < kMvGrabberBitCount; ++bit) {
        EXPECT_EQ(grabber.GetGrabberBit(bit, &value), MV_OK);
        EXPECT_EQ(value, 0u);
        EXPECT_EQ(grabber.SetGrabberBit(bit, bit + 1), MV_OK);
        EXPECT_EQ(grabber.GetGrabberBit(bit, &value), MV_OK);
        EXPECT_EQ(value, 1u);
    }
    EXPECT_EQ(grabber.SetGrabberBit(31, 0), MV_OK);
    EXPECT_EQ(grabber.GetGrabberBit(31, &value), MV_OK);
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(grabber.GetGrabberBit(30, &value), MV_OK);
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(grabber.SetGrabberBit(32, 1), MV_BAD_VALUE);
    EXPECT_EQ(grabber.GetGrabberBit(32, &value), MV_BAD_VALUE);
    EXPECT_EQ(grabber.GetGrabberBit(0, nullptr), MV_BAD_VALUE);
}

TEST(Features, AreOnAtFirstAndSwitchIndividually) {
    TestGrabber grabber;
    EXPECT_EQ(grabber.GetFeatureMask(), 0xFu);
    for (std::uint32_t number = 0; number < EMV_FEATURE_COUNT; ++number) {
        const auto id = static_cast<EMV_FEATURE_ID>(number);
        std::uint32_t on = 9;
        EXPECT_EQ(grabber.GetFeatureStatus(id), EMV_STATUS_ON);
        EXPECT_EQ(grabber.SetFeature(id, 0), MV_OK);
        EXPECT_EQ(grabber.GetFeatureStatus(id), EMV_STATUS_OFF);
        EXPECT_EQ(grabber.GetFeature(id, &on), MV_OK);
        EXPECT_EQ(on, 0u);
        EXPECT_EQ(grabber.GetFeatureMask(), 0xFu & ~(1u << number));
        EXPECT_EQ(grabber.SetFeature(id, 7), MV_OK);
        EXPECT_EQ(grabber.GetFeature(id, &on), MV_OK);
        EXPECT_EQ(on, 1u);
        EXPECT_EQ(grabber.GetFeature(id, nullptr), MV_BAD_VALUE);
    }
    EXPECT_EQ(grabber.GetFeatureMask(), 0xFu);
}

TEST(Features, RefuseUnknownIds) {
    TestGrabber grabber;
    std::uint32_t on = 0;
    EXPECT_EQ(grabber.GetFeatureStatus(EMV_FEATURE_COUNT), EMV_STATUS_UNKNOWN);
    EXPECT_EQ(grabber.SetFeature(EMV_FEATURE_COUNT, 1), MV_BAD_VALUE);
    EXPECT_EQ(grabber.GetFeature(EMV_FEATURE_COUNT, &on), MV_BAD_VALUE);
}

} // namespace
