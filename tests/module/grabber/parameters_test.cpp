// parameters_test.cpp - exposure, frame interval and the other numbered parameters
#include "grabber/parameters.h"

#include "tests/module/grabber/parameters_fixture.h"

#include <atomic>
#include <limits>
#include <thread>

namespace {

class ParametersTest : public ParametersFixture {};

/// All of 256 to 267, those that only the host has a name for included.
const uint32_t kTimerIds[] = {256, 257, 258, 259, 260, 261, 262, 263, 264, 265, 266, 267};
const uint32_t kNeverServed[] = {259, 260, 262, 263, 265, 267};

// ---- which parameters there are ----

TEST_F(ParametersTest, TheTimerParametersNeedInitialisationThenAnOpenCamera) {
    ASSERT_EQ(grabber->CloseActCamera(), MV_OK);
    for (const uint32_t id : kTimerIds) {
        EXPECT_EQ(Get(id), (Values{10, kUntouched, kUntouched})) << id;
        EXPECT_EQ(Result(Limits(id)), 10u) << id;
        EXPECT_EQ(grabber->SetGrabberParam(id, 0, 0), MV_CAMERA_NOT_OPEN) << id;
    }
    ASSERT_EQ(grabber->DeInit(), MV_OK);
    for (const uint32_t id : kTimerIds) {
        EXPECT_EQ(Get(id), (Values{2, kUntouched, kUntouched})) << id;
        EXPECT_EQ(Result(Limits(id)), 2u) << id;
        EXPECT_EQ(grabber->SetGrabberParam(id, 0, 0), MV_NOT_INITIALISED) << id;
    }
}

TEST_F(ParametersTest, TheTimerParametersNeedTheSdk) {
    grabber->Api().Unload();
    for (const uint32_t id : kTimerIds) {
        EXPECT_EQ(Get(id), (Values{2, kUntouched, kUntouched})) << id;
        EXPECT_EQ(Result(Limits(id)), 2u) << id;
        EXPECT_EQ(grabber->SetGrabberParam(id, 0, 0), MV_NOT_INITIALISED) << id;
    }
    ASSERT_TRUE(grabber->Api().Load(nullptr, nullptr)); // to be closed with
}

TEST_F(ParametersTest, TheOtherParametersNeedNoCamera) {
    ASSERT_EQ(grabber->DeInit(), MV_OK);
    EXPECT_EQ(Result(Get(1)), 0u);
    EXPECT_EQ(Result(Get(128)), 0u);
    EXPECT_EQ(Get(4096), (Values{0, 0, 0}));
    EXPECT_EQ(Result(Limits(1)), 0u);
    EXPECT_EQ(Result(Limits(4096)), 0u);
}

TEST_F(ParametersTest, TheNumberOfFrameBuffersIsTheHosts) {
    EXPECT_EQ(Limits(1), (Values{0, 1, kAllBits, 0, 0}));
    EXPECT_EQ(grabber->SetGrabberParam(1, 7, 0), MV_OK);
    EXPECT_EQ(Get(1), (Values{0, 7, 0}));
    EXPECT_EQ(grabber->GetRequestedBufferCount(), 7u);
}

TEST_F(ParametersTest, TheCapabilitiesLoseBits0And2AndGainBit3) {
    uint64_t host = 0;
    ASSERT_EQ(grabber->CMivoraGrabber::GetGrabberParam(128, &host, nullptr), MV_OK);
    EXPECT_NE(host & 5u, 0u);
    EXPECT_EQ(Get(128), (Values{0, (host & ~uint64_t{5}) | 8u, 0}));
    EXPECT_EQ(grabber->GetGrabberParam(128, nullptr, nullptr), MV_OK);
    uint64_t out[4] = {};
    EXPECT_EQ(Result(Limits(128)),
              static_cast<uint64_t>(grabber->CMivoraGrabber::GetGrabberParamLimits(
                  128, &out[0], &out[1], &out[2], &out[3])));
    EXPECT_EQ(grabber->SetGrabberParam(128, 0, 0),
              grabber->CMivoraGrabber::SetGrabberParam(128, 0, 0));
}

TEST_F(ParametersTest, TheTimerModeIsTheHostsAndHasNoLimits) {
    ASSERT_EQ(grabber->CMivoraGrabber::SetGrabberParam(256, 3, 0), MV_OK);
    EXPECT_EQ(Get(256), (Values{0, 3, 0}));
    EXPECT_EQ(Limits(256), (Values{34, kUntouched, kUntouched, kUntouched, kUntouched}));
    EXPECT_EQ(grabber->SetGrabberParam(256, 1, 0), MV_NOT_SERVED);
    EXPECT_EQ(Get(256), (Values{0, 3, 0}));
}

TEST_F(ParametersTest, TheTimersStateIsZeroOrOneAndHasNoLimits) {
    grabber->ChangeTimerTB(1, 2, 5);
    EXPECT_EQ(Get(258), (Values{0, 1, 0}));
    grabber->ChangeTimerTB(1, 2, 0);
    EXPECT_EQ(Get(258), (Values{0, 0, 0}));
    EXPECT_EQ(Limits(258), (Values{34, kUntouched, kUntouched, kUntouched, kUntouched}));
    EXPECT_EQ(grabber->SetGrabberParam(258, 1, 0), MV_NOT_SERVED);
}

TEST_F(ParametersTest, SomeParametersAreServedByNoCamera) {
    for (const uint32_t id : kNeverServed) {
        EXPECT_EQ(Get(id), (Values{34, kUntouched, kUntouched})) << id;
        EXPECT_EQ(Limits(id), (Values{34, kUntouched, kUntouched, kUntouched, kUntouched})) << id;
        EXPECT_EQ(grabber->SetGrabberParam(id, 0, 0), MV_NOT_SERVED) << id;
    }
}

TEST_F(ParametersTest, OtherParametersAreTheHosts) {
    for (const uint32_t id : {0u, 2u, 127u, 129u, 255u, 264u, 266u, 268u, 4095u, 4097u}) {
        uint64_t out[4] = {};
        EXPECT_EQ(Result(Get(id)), static_cast<uint64_t>(grabber->CMivoraGrabber::GetGrabberParam(
                                       id, &out[0], &out[1])))
            << id;
        EXPECT_EQ(Result(Limits(id)),
                  static_cast<uint64_t>(grabber->CMivoraGrabber::GetGrabberParamLimits(
                      id, &out[0], &out[1], &out[2], &out[3])))
            << id;
        EXPECT_EQ(grabber->SetGrabberParam(id, 0, 0),
                  grabber->CMivoraGrabber::SetGrabberParam(id, 0, 0))
            << id;
    }
}

TEST_F(ParametersTest, TheFrameCounterIsGivenTwice) {
    EXPECT_EQ(Get(4096), (Values{0, 0, 0}));
    EXPECT_EQ(Limits(4096), (Values{0, 0, kAllBits, 0, kAllBits}));
    EXPECT_EQ(grabber->SetGrabberParam(4096, 1, 1),
              grabber->CMivoraGrabber::SetGrabberParam(4096, 1, 1));
}

TEST_F(ParametersTest, OutputsMayBeAbsent) {
    PutInterval(40000, 100, 1000000);
    for (const uint32_t id : {1u, 128u, 256u, 257u, 258u, 261u, 4096u}) {
        EXPECT_EQ(grabber->GetGrabberParam(id, nullptr, nullptr), MV_OK) << id;
    }
    for (const uint32_t id : {1u, 257u, 261u, 4096u}) {
        EXPECT_EQ(grabber->GetGrabberParamLimits(id, nullptr, nullptr, nullptr, nullptr), MV_OK);
        uint64_t out = kUntouched;
        EXPECT_EQ(grabber->GetGrabberParamLimits(id, nullptr, &out, nullptr, nullptr), MV_OK);
        EXPECT_NE(out, kUntouched);
    }
}

// ---- reading the camera ----

TEST_F(ParametersTest, ReadsExposureAndFixedIntervalInTheTimeBase) {
    PutExposure(20999.9, 10, 1000000);
    PutInterval(40999, 100, 1000000);
    SetBase(kMicroseconds);
    EXPECT_EQ(Get(257), (Values{0, 20999, 40999}));
    SetBase(kMilliseconds);
    sdk.ClearCalls();
    EXPECT_EQ(Get(257), (Values{0, 20, 40}));
    EXPECT_EQ(sdk.Calls(), (Texts{"PxnFeatureFloatGet(camera0, \"ExposureTime\")",
                                  "PxnFeatureIntGet(camera0, \"AcquisitionFixedIntervalTime\")"}));
    SetBase(0);
    EXPECT_EQ(Get(257), (Values{0, 0, 0}));
    PutExposure(2000000, 10, 5000000);
    EXPECT_EQ(Get(257), (Values{0, 2, 0}));
}

TEST_F(ParametersTest, ReadsTheIntervalFromTheFrameRateOtherwise) {
    PutRate(30, 1, 100);
    SetBase(kMicroseconds);
    EXPECT_EQ(Interval(), 33333u);
    SetBase(kMilliseconds);
    sdk.ClearCalls();
    EXPECT_EQ(Interval(), 33u);
    EXPECT_EQ(sdk.Calls(), (Texts{"PxnFeatureIntGet(camera0, \"AcquisitionFixedIntervalTime\")",
                                  "PxnFeatureFloatGet(camera0, \"AcquisitionFrameRate\")"}));
    PutRate(0.25, 0, 100);
    SetBase(0);
    EXPECT_EQ(Interval(), 4u);
}

TEST_F(ParametersTest, EveryWholeMillisecondComesOutWhole) {
    SetBase(kMilliseconds);
    for (uint32_t value = 1; value < 20000; value += 7) {
        PutExposure(value * 1000.0, 0, 1e9);
        ASSERT_EQ(Exposure(), value);
    }
}

TEST_F(ParametersTest, ReadingDoesNotStore) {
    PutExposure(5000, 10, 1000000);
    const auto before = HostTiming::All(*grabber);
    Get(257);
    Exposure();
    Interval();
    EXPECT_EQ(HostTiming::All(*grabber), before);
    EXPECT_EQ(events, Texts{});
}

TEST_F(ParametersTest, ACameraThatCannotAnswerDoesNotServeTheTiming) {
    sdk.FailFeature(scripted::CameraHandle(), "ExposureTime", "PxnFeatureFloatGet", PxnErrIO);
    uint32_t value = 77;
    EXPECT_FALSE(grabber->GetExposureTime(&value));
    EXPECT_EQ(value, 77u);
    EXPECT_EQ(Get(257), (Values{34, kUntouched, kUntouched}));
    sdk.ClearFailures();
    Camera().Remove("AcquisitionFrameRate");
    EXPECT_FALSE(grabber->GetFrameInterval(&value));
    EXPECT_EQ(value, 77u);
    EXPECT_EQ(Get(257), (Values{34, kUntouched, kUntouched}));
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(ParametersTest, NothingIsReadWithoutACamera) {
    ASSERT_EQ(grabber->CloseActCamera(), MV_OK);
    sdk.ClearCalls();
    uint32_t value = 0;
    EXPECT_FALSE(grabber->GetExposureTime(&value));
    EXPECT_FALSE(grabber->GetFrameInterval(&value));
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(ParametersTest, ValuesBeyondTheRangeStayAtItsEnd) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    SetBase(kMicroseconds);
    PutExposure(1e300, 0, kInfinity);
    EXPECT_EQ(Exposure(), 0xFFFFFFFFu);
    PutExposure(4294967295.5, 0, kInfinity);
    EXPECT_EQ(Exposure(), 0xFFFFFFFFu);
    PutExposure(4294967294.9, 0, kInfinity);
    EXPECT_EQ(Exposure(), 0xFFFFFFFEu);
    PutExposure(-3, -9, 9);
    EXPECT_EQ(Exposure(), 0u);
    PutExposure(std::numeric_limits<double>::quiet_NaN(), 0, 9);
    EXPECT_EQ(Exposure(), 0u);
    PutRate(0, 0, 1);
    EXPECT_EQ(Interval(), 0xFFFFFFFFu);
    PutInterval(std::numeric_limits<int64_t>::max(), 0, 9);
    EXPECT_EQ(Interval(), 0xFFFFFFFFu);
    PutInterval(std::numeric_limits<int64_t>::min(), 0, 9);
    EXPECT_EQ(Interval(), 0u);
}

// ---- limits ----

TEST_F(ParametersTest, TheLimitsComeFromTheFixedIntervalTime) {
    PutExposure(10, 10.9, 5000999);
    PutInterval(100, 2999, 10000000);
    SetBase(kMicroseconds);
    EXPECT_EQ(Limits(257), (Values{0, 10, 5000999, 2999, 10000000}));
    SetBase(kMilliseconds);
    sdk.ClearCalls();
    EXPECT_EQ(Limits(257), (Values{0, 0, 5000, 2, 10000}));
    EXPECT_EQ(sdk.Calls(),
              (Texts{"PxnFeatureFloatRangeQuery(camera0, \"ExposureTime\")",
                     "PxnFeatureIntRangeQuery(camera0, \"AcquisitionFixedIntervalTime\")"}));
}

TEST_F(ParametersTest, TheLimitsComeFromTheFrameRateOtherwise) {
    PutRate(25, 0.5, 160);
    SetBase(kMicroseconds);
    sdk.ClearCalls();
    EXPECT_EQ(Limits(257), (Values{0, 10, 1000000, 6250, 2000000}));
    EXPECT_EQ(sdk.Calls(),
              (Texts{"PxnFeatureFloatRangeQuery(camera0, \"ExposureTime\")",
                     "PxnFeatureIntRangeQuery(camera0, \"AcquisitionFixedIntervalTime\")",
                     "PxnFeatureFloatRangeQuery(camera0, \"AcquisitionFrameRate\")"}));
    PutRate(25, 0, 160);
    EXPECT_EQ(Limits(257), (Values{0, 10, 1000000, 6250, kAllBits}));
}

TEST_F(ParametersTest, LimitsThatTheCameraCannotTellAreNotServed) {
    const Values refused{34, kUntouched, kUntouched, kUntouched, kUntouched};
    sdk.FailFeature(scripted::CameraHandle(), "ExposureTime", "PxnFeatureFloatRangeQuery",
                    PxnErrIO);
    EXPECT_EQ(Limits(257), refused);
    EXPECT_EQ(grabber->SetGrabberParam(257, 100, 40000), MV_NOT_SERVED);
    sdk.ClearFailures();
    Camera().Remove("AcquisitionFrameRate");
    EXPECT_EQ(Limits(257), refused);
    EXPECT_EQ(grabber->SetGrabberParam(257, 100, 40000), MV_NOT_SERVED);
    EXPECT_EQ(sdk.Calls({"PxnFeatureFloatSet"}), Texts{});
}

// ---- writing the camera ----

TEST_F(ParametersTest, SetsExposureThenTheFixedInterval) {
    PutInterval(100, 100, 1000000);
    SetBase(kMilliseconds);
    sdk.ClearCalls();
    EXPECT_EQ(grabber->SetGrabberParam(257, 20, 40), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnFeatureFloatSet", "PxnFeatureIntSet"}),
              (Texts{"PxnFeatureFloatSet(camera0, \"ExposureTime\", 20000)",
                     "PxnFeatureIntSet(camera0, \"AcquisitionFixedIntervalTime\", 40000)"}));
    EXPECT_EQ(events, Texts{});
}

TEST_F(ParametersTest, SettingTheCameraStoresNothing) {
    SetBase(kMilliseconds);
    grabber->ChangeTimerTB(1, 2, 0);
    HostTiming::SetSaved(*grabber, 3, 4);
    const auto before = HostTiming::All(*grabber);
    EXPECT_EQ(grabber->SetGrabberParam(257, 20, 40), MV_OK);
    EXPECT_EQ(HostTiming::All(*grabber), before);
}

TEST_F(ParametersTest, SetsTheFrameRateOfACameraWithoutFixedInterval) {
    SetBase(kMilliseconds);
    sdk.ClearCalls();
    EXPECT_EQ(grabber->SetGrabberParam(257, 20, 40), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnFeatureFloatSet", "PxnFeatureIntSet"}),
              (Texts{"PxnFeatureFloatSet(camera0, \"ExposureTime\", 20000)",
                     "PxnFeatureIntSet(camera0, \"AcquisitionFixedIntervalTime\", 40000)",
                     "PxnFeatureFloatSet(camera0, \"AcquisitionFrameRate\", 25)"}));
}

TEST_F(ParametersTest, AnExposureThatTheCameraRefusesEndsTheWrite) {
    SetBase(kMicroseconds);
    sdk.FailFeature(scripted::CameraHandle(), "ExposureTime", "PxnFeatureFloatSet", PxnErrIO);
    EXPECT_EQ(grabber->SetGrabberParam(257, 100, 40000), MV_NOT_SERVED);
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntSet"}), Texts{});
}

TEST_F(ParametersTest, AnIntervalThatTheCameraRefusesInBothWaysIsNotServed) {
    SetBase(kMicroseconds);
    sdk.FailFeature(scripted::CameraHandle(), "AcquisitionFrameRate", "PxnFeatureFloatSet",
                    PxnErrIO);
    EXPECT_EQ(grabber->SetGrabberParam(257, 100, 40000), MV_NOT_SERVED);
    EXPECT_EQ(Camera()["ExposureTime"].floatValue, 100);
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(ParametersTest, TimingIsTakenUpToItsLimitsAndNotBeyond) {
    PutInterval(100, 200, 3000);
    SetBase(kMicroseconds);
    for (const auto& [exposure, interval] : {std::pair<uint64_t, uint64_t>{9, 200},
                                             {1000001, 200},
                                             {10, 199},
                                             {10, 3001},
                                             {kAllBits, 200},
                                             {10, kAllBits}}) {
        sdk.ClearCalls();
        EXPECT_EQ(grabber->SetGrabberParam(257, exposure, interval), MV_BAD_VALUE);
        EXPECT_EQ(sdk.Calls({"PxnFeatureFloatSet", "PxnFeatureIntSet"}), Texts{});
    }
    EXPECT_EQ(grabber->SetGrabberParam(257, 10, 200), MV_OK);
    EXPECT_EQ(grabber->SetGrabberParam(257, 1000000, 3000), MV_OK);
}

TEST_F(ParametersTest, AnExposureWithoutUpperLimitMayUseEveryBit) {
    PutExposure(10, 0, std::numeric_limits<double>::infinity());
    PutInterval(100, 200, 3000);
    SetBase(kMicroseconds);
    EXPECT_EQ(Limits(257), (Values{0, 0, kAllBits, 200, 3000}));
    EXPECT_EQ(grabber->SetGrabberParam(257, 5, 200), MV_OK);
    EXPECT_EQ(grabber->SetGrabberParam(257, kAllBits, 200), MV_OK);
    EXPECT_EQ(Camera()["ExposureTime"].floatValue, 18446744073709551616.0);
}

TEST_F(ParametersTest, ValuesTooLargeForTheCamerasIntegerStayAtItsEnd) {
    PutRate(25, 0, 100); // no upper limit of the interval
    SetBase(0);
    PutExposure(10, 0, 1000000);
    sdk.ClearCalls();
    EXPECT_EQ(grabber->SetGrabberParam(257, 1, kAllBits), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntSet"}),
              Texts{"PxnFeatureIntSet(camera0, \"AcquisitionFixedIntervalTime\", "
                    "9223372036854775807)"});
}

// ---- who is notified ----

TEST_F(ParametersTest, WhoIsToldFindsTheNewTimingStored) {
    struct Witness {
        const CMivoraGrabber& grabber;
        std::vector<std::vector<int64_t>> seen;
    } witness{*grabber, {}};
    SetBase(kMicroseconds);
    grabber->InstDialogUpdateCallBack(
        [](uint32_t, void* context) {
            auto& self = *static_cast<Witness*>(context);
            self.seen.push_back(HostTiming::All(self.grabber));
        },
        &witness);
    grabber->SetTimerMicroseconds(20, 40);
    PutExposure(1234, 10, 1000000);
    grabber->OnTimingFeatureChanged(scripted::CameraHandle(), "ExposureTime");
    PutInterval(5678, 100, 1000000);
    grabber->OnTimingFeatureChanged(scripted::CameraHandle(), "AcquisitionFrameRate");
    grabber->InstDialogUpdateCallBack(nullptr, nullptr);
    EXPECT_EQ(witness.seen, (std::vector<std::vector<int64_t>>{{20, 40, -6, 20, 40, -6},
                                                               {20, 40, -6, 20, 40, -6},
                                                               {1234, 40, -6, 1234, 40, -6},
                                                               {1234, 5678, -6, 1234, 5678, -6}}));
}

// For ThreadSanitizer.
TEST_F(ParametersTest, TheTimeBaseMayBeReadWhileTheSdkIsUnloaded) {
    constexpr int kTimes = 50;
    std::atomic<bool> done{false};
    std::thread reader([&] {
        while (!done) {
            uint64_t value = 0;
            const MV_ERRCODE result = grabber->GetGrabberParam(MVGF_TIME_BASE, &value, nullptr);
            EXPECT_TRUE(result == MV_OK || result == MV_NOT_INITIALISED ||
                        result == MV_CAMERA_NOT_OPEN)
                << result;
        }
    });
    for (int time = 0; time < kTimes; ++time) {
        EXPECT_EQ(grabber->DeInit(), MV_OK);
        EXPECT_EQ(grabber->Init(), MV_OK);
        EXPECT_EQ(grabber->SetActCameraIndex(0), MV_OK);
        EXPECT_EQ(grabber->OpenActCamera(), MV_OK);
    }
    done = true;
    reader.join();
}

} // namespace
