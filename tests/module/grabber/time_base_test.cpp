// time_base_test.cpp - timing in units that the host chooses
#include "tests/module/grabber/parameters_fixture.h"

#include <cmath>
#include <limits>

namespace {

class TimeBase : public ParametersFixture {};

// ---- the time base ----

TEST_F(TimeBase, TheTimeBaseIsTheExponent) {
    SetBase(kMilliseconds);
    EXPECT_EQ(Get(261), (Values{0, static_cast<uint64_t>(int64_t{-3}), 0}));
    EXPECT_EQ(Limits(261), (Values{0, static_cast<uint64_t>(int64_t{-6}), 0, 0, 0}));
}

TEST_F(TimeBase, AFinerTimeBaseMultipliesTheStoredValues) {
    SetBase(kMilliseconds);
    grabber->ChangeTimerTB(20, 40, 0);
    HostTiming::SetSaved(*grabber, 3, 5);
    EXPECT_EQ(grabber->SetGrabberParam(261, static_cast<uint64_t>(int64_t{-6}), 0), MV_OK);
    EXPECT_EQ(HostTiming::All(*grabber), (std::vector<int64_t>{20000, 40000, -6, 3000, 5000, -6}));
}

TEST_F(TimeBase, ACoarserTimeBaseDividesTheStoredValuesWhole) {
    SetBase(kMicroseconds);
    grabber->ChangeTimerTB(20001, 40999, 0);
    HostTiming::SetSaved(*grabber, 999, 1000);
    EXPECT_EQ(grabber->SetGrabberParam(261, static_cast<uint64_t>(int64_t{-3}), 0), MV_OK);
    EXPECT_EQ(HostTiming::All(*grabber), (std::vector<int64_t>{20, 40, -3, 0, 1, -3}));
}

TEST_F(TimeBase, TheSameTimeBaseIsStored) {
    SetBase(-4);
    grabber->ChangeTimerTB(20, 40, 0);
    HostTiming::SetSaved(*grabber, 3, 5);
    EXPECT_EQ(grabber->SetGrabberParam(261, static_cast<uint64_t>(int64_t{-4}), 0), MV_OK);
    EXPECT_EQ(HostTiming::All(*grabber), (std::vector<int64_t>{20, 40, -4, 3, 5, -4}));
}

TEST_F(TimeBase, AValueThatOutgrowsItsPlaceStaysAtTheEnd) {
    SetBase(0);
    grabber->ChangeTimerTB(4294, 4295, 0);
    EXPECT_EQ(grabber->SetGrabberParam(261, static_cast<uint64_t>(int64_t{-6}), 0), MV_OK);
    EXPECT_EQ(HostTiming::All(*grabber)[0], 4294000000);
    EXPECT_EQ(HostTiming::All(*grabber)[1], 0xFFFFFFFF);
}

TEST_F(TimeBase, ATimeBaseOutsideItsLimitsChangesNothing) {
    SetBase(kMilliseconds);
    grabber->ChangeTimerTB(20, 40, 0);
    const auto before = HostTiming::All(*grabber);
    for (const int64_t exponent : {int64_t{1}, int64_t{-7}, std::numeric_limits<int64_t>::max(),
                                   std::numeric_limits<int64_t>::min()}) {
        EXPECT_EQ(grabber->SetGrabberParam(261, static_cast<uint64_t>(exponent), 0), MV_BAD_VALUE);
    }
    EXPECT_EQ(grabber->SetGrabberParam(261, 0, 1), MV_BAD_VALUE);
    EXPECT_EQ(grabber->SetGrabberParam(261, 0, kAllBits), MV_BAD_VALUE);
    EXPECT_EQ(HostTiming::All(*grabber), before);
}

TEST_F(TimeBase, ATimeBaseFromAStrangeConfigurationIsRescaledAllTheSame) {
    SetBase(-30);
    grabber->ChangeTimerTB(0xFFFFFFFF, 0, 0);
    EXPECT_EQ(grabber->SetGrabberParam(261, 0, 0), MV_OK);
    EXPECT_EQ(HostTiming::All(*grabber)[0], 0);
    SetBase(std::numeric_limits<int32_t>::max());
    grabber->ChangeTimerTB(1, 0, 0);
    EXPECT_EQ(grabber->SetGrabberParam(261, 0, 0), MV_OK);
    EXPECT_EQ(HostTiming::All(*grabber)[0], 0xFFFFFFFF);
    EXPECT_EQ(HostTiming::All(*grabber)[1], 0);
}

// ---- whole microseconds ----

TEST_F(TimeBase, TellsTheStoredTimingInMicrosecondsWithoutTheCamera) {
    SetBase(kMilliseconds);
    grabber->ChangeTimerTB(20, 4294967295, 0);
    sdk.ClearCalls();
    uint64_t exposure = 0;
    uint64_t interval = 0;
    grabber->GetTimerMicroseconds(&exposure, &interval);
    EXPECT_EQ(exposure, 20000u);
    EXPECT_EQ(interval, 4294967295000u);
    EXPECT_EQ(sdk.Calls(), Texts{});
    grabber->GetTimerMicroseconds(nullptr, nullptr);
    SetBase(0);
    grabber->GetTimerMicroseconds(&exposure, &interval);
    EXPECT_EQ(exposure, 20000000u);
}

TEST_F(TimeBase, TakesMicrosecondsAndTellsHostAndDialogs) {
    SetBase(kMilliseconds);
    grabber->ChangeTimerTB(1, 2, 7);
    events.clear();
    sdk.ClearCalls();
    grabber->SetTimerMicroseconds(20999, 40001);
    EXPECT_EQ(HostTiming::All(*grabber), (std::vector<int64_t>{20, 40, -3, 20, 40, -3}));
    EXPECT_EQ(Get(258), (Values{0, 1, 0}));
    // The host's own ChangeTimerTB tells the dialogs first.
    EXPECT_EQ(events, (Texts{"update 2", "update 3"}));
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(TimeBase, RefusesAnExposureThatIsNotShorterThanTheInterval) {
    SetBase(kMicroseconds);
    grabber->ChangeTimerTB(1, 2, 1);
    const auto before = HostTiming::All(*grabber);
    events.clear();
    grabber->SetTimerMicroseconds(500, 500);
    grabber->SetTimerMicroseconds(501, 500);
    grabber->SetTimerMicroseconds(kAllBits, 0);
    EXPECT_EQ(HostTiming::All(*grabber), before);
    EXPECT_EQ(events, Texts{});
    grabber->SetTimerMicroseconds(499, 500);
    EXPECT_EQ(HostTiming::All(*grabber), (std::vector<int64_t>{499, 500, -6, 499, 500, -6}));
}

TEST_F(TimeBase, MicrosecondsThatOutgrowTheHostsValuesStayAtTheEnd) {
    SetBase(kMicroseconds);
    grabber->SetTimerMicroseconds(kAllBits - 1, kAllBits);
    EXPECT_EQ(HostTiming::All(*grabber)[0], 0xFFFFFFFF);
    EXPECT_EQ(HostTiming::All(*grabber)[1], 0xFFFFFFFF);
}

TEST_F(TimeBase, AnExponentFarOffIsNoTrouble) {
    uint64_t exposure = 0;
    uint64_t interval = 0;
    grabber->ChangeTimerTB(1, 0, 0);
    SetBase(std::numeric_limits<int32_t>::max());
    grabber->GetTimerMicroseconds(&exposure, &interval);
    EXPECT_EQ(exposure, kAllBits);
    SetBase(std::numeric_limits<int32_t>::min());
    grabber->GetTimerMicroseconds(&exposure, &interval);
    EXPECT_EQ(exposure, 0u);
}

TEST_F(TimeBase, MicrosecondsAreTakenBeforeInit) {
    ASSERT_EQ(grabber->DeInit(), MV_OK);
    SetBase(kMicroseconds);
    events.clear();
    grabber->SetTimerMicroseconds(20, 40);
    EXPECT_EQ(HostTiming::All(*grabber), (std::vector<int64_t>{20, 40, -6, 20, 40, -6}));
    EXPECT_EQ(events, (Texts{"update 2", "update 3"}));
}

// ---- the camera's numbers ----

TEST_F(TimeBase, TheCamerasMicrosecondsAreMultipliedNotDivided) {
    SetBase(kMilliseconds);
    // A division by 1000 gives 64.
    PutExposure(std::nextafter(65000.0, 0.0), 0, 1000000);
    EXPECT_EQ(Exposure(), 65u);
}

TEST_F(TimeBase, PowersOfTenComeFromRepeatedSquaring) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    PutExposure(0, 0, kInfinity);
    PutRate(1, 0, kInfinity);
    SetBase(31);
    EXPECT_EQ(grabber->SetGrabberParam(257, 1, 1), MV_OK);
    // The 37th power in another way has another last digit.
    EXPECT_EQ(Camera()["ExposureTime"].floatValue, 0x1.e17b84357691cp+122);
}

} // namespace
