// camera_features_test.cpp - features that change with others, and the callbacks that report it

#include "tests/pxnc/simulator/simulator_fixture.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <thread>

namespace simulator_tests {
namespace {

class LimitTest : public SimulatorTest {
protected:
    void SetUp() override {
        SimulatorTest::SetUp();
        camera = Open(kGigECamera);
    }
    void TearDown() override {
        EXPECT_EQ(PxnCameraClose(camera), 0);
        SimulatorTest::TearDown();
    }
    std::int64_t Max(const char* name) const {
        std::int64_t low = 0;
        std::int64_t high = 0;
        EXPECT_EQ(PxnFeatureIntRangeQuery(camera, name, &low, &high), 0);
        return high;
    }
    double MaxFloat(const char* name) const {
        double low = 0;
        double high = 0;
        EXPECT_EQ(PxnFeatureFloatRangeQuery(camera, name, &low, &high), 0);
        return high;
    }
    std::int64_t Increment(const char* name) const {
        std::int64_t increment = 0;
        EXPECT_EQ(PxnFeatureIntIncrementQuery(camera, name, &increment), 0);
        return increment;
    }

    PxnHandle camera = nullptr;
};

TEST_F(LimitTest, OffsetAndSizeShareTheSensor) {
    EXPECT_EQ(Max("OffsetX"), 1280 - 640);
    EXPECT_EQ(PxnFeatureIntSet(camera, "OffsetX", 640), 0);
    EXPECT_EQ(Max("Width"), 640);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 644), PxnErrInvalidValue);
    EXPECT_EQ(PxnFeatureIntSet(camera, "OffsetX", 100), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 1180), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "OffsetX", 104), PxnErrInvalidValue);
    EXPECT_EQ(Max("OffsetY"), 1024 - 480);
}

TEST_F(LimitTest, BinningShrinksTheSensorAndTheRegionWithIt) {
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 1280), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "BinningHorizontal", 4), 0);
    EXPECT_EQ(GetInt(camera, "WidthMax"), 320);
    EXPECT_EQ(GetInt(camera, "Width"), 320);
    EXPECT_EQ(GetInt(camera, "Height"), 480);
}

TEST_F(LimitTest, PayloadFollowsFormatAndSize) {
    EXPECT_EQ(GetInt(camera, "PayloadSize"), 640 * 480);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "PixelFormat", "Mono12p"), 0);
    EXPECT_EQ(GetInt(camera, "PayloadSize"), 640 * 480 * 3 / 2);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Height", 100), 0);
    EXPECT_EQ(GetInt(camera, "PayloadSize"), 640 * 100 * 3 / 2);
    std::uint32_t payload = 0;
    EXPECT_EQ(PxnPayloadSizeGet(camera, &payload), 0);
    EXPECT_EQ(payload, 640u * 100u * 3u / 2u);
    EXPECT_EQ(PxnPayloadSizeGet(InfoOf(camera).streamHandles[0], &payload), 0);
    EXPECT_EQ(PxnPayloadSizeGet(camera, nullptr), PxnErrBadParameter);
    EXPECT_EQ(PxnPayloadSizeGet(PXN_SYSTEM_HANDLE, &payload), PxnErrBadHandle);
}

TEST_F(LimitTest, LinesOfSingleComponentPackedFormatsAreWholeBytes) {
    const PxnHandle usb = Open(kUsbCamera);
    EXPECT_EQ(PxnFeatureEnumSet(usb, "PixelFormat", "Mono10p"), 0);
    EXPECT_EQ(PxnFeatureIntSet(usb, "Width", 642), 0);
    EXPECT_EQ(GetInt(usb, "LinePitch"), 803); // 6420 bits
    EXPECT_EQ(GetInt(usb, "ImageSize"), 803 * 480);
    EXPECT_EQ(PxnCameraClose(usb), 0);
}

TEST_F(LimitTest, GroupsOfPixelsWidenTheIncrement) {
    const PxnHandle usb = Open(kUsbCamera);
    std::int64_t increment = 0;
    EXPECT_EQ(PxnFeatureIntSet(usb, "Width", 642), 0);
    EXPECT_EQ(PxnFeatureEnumSet(usb, "PixelFormat", "YUV411_8"), 0);
    EXPECT_EQ(PxnFeatureIntIncrementQuery(usb, "Width", &increment), 0);
    EXPECT_EQ(increment, 4);
    EXPECT_EQ(GetInt(usb, "Width"), 640) << "moved to the new increment";
    EXPECT_EQ(PxnCameraClose(usb), 0);
}

TEST_F(LimitTest, ExposureLimitsTheFrameRate) {
    EXPECT_EQ(PxnFeatureFloatSet(camera, "ExposureTime", 5000.0), 0);
    EXPECT_DOUBLE_EQ(MaxFloat("AcquisitionFrameRate"), 200.0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "AcquisitionFrameRate", 201.0), PxnErrInvalidValue);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "AcquisitionFrameRate", 200.0), 0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "ExposureTime", 50000.0), 0);
    EXPECT_DOUBLE_EQ(GetFloat(camera, "AcquisitionFrameRate"), 20.0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "ExposureTime", 100.0), 0);
    EXPECT_GT(MaxFloat("AcquisitionFrameRate"), 1000.0);
}

TEST_F(LimitTest, SizeAndThroughputLimitTheFrameRate) {
    EXPECT_EQ(PxnFeatureFloatSet(camera, "ExposureTime", 10.0), 0);
    const double small = MaxFloat("AcquisitionFrameRate");
    EXPECT_EQ(PxnFeatureIntSet(camera, "Height", 960), 0);
    const double large = MaxFloat("AcquisitionFrameRate");
    EXPECT_LT(large, small);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "DeviceLinkThroughputLimitMode", "On"), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "DeviceLinkThroughputLimit", 10000000), 0);
    EXPECT_NEAR(MaxFloat("AcquisitionFrameRate"), 1e7 / (640 * 960), 1e-6);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "PixelFormat", "Mono16"), 0);
    EXPECT_NEAR(MaxFloat("AcquisitionFrameRate"), 5e6 / (640 * 960), 1e-6);
}

TEST_F(LimitTest, OnlyOneCameraCountsInIntervals) {
    std::int64_t interval = 0;
    EXPECT_EQ(PxnFeatureIntGet(camera, "AcquisitionFixedIntervalTime", &interval), PxnErrNotFound);
    const PxnHandle serial = Open(kSerialCamera);
    EXPECT_EQ(GetInt(serial, "AcquisitionFixedIntervalTime"), 10000);
    EXPECT_EQ(PxnFeatureIntSet(serial, "AcquisitionFixedIntervalTime", 20000), 0);
    EXPECT_DOUBLE_EQ(GetFloat(serial, "AcquisitionFrameRate"), 50.0);
    EXPECT_EQ(PxnFeatureFloatSet(serial, "AcquisitionFrameRate", 25.0), 0);
    EXPECT_EQ(GetInt(serial, "AcquisitionFixedIntervalTime"), 40000);
    std::int64_t low = 0;
    std::int64_t high = 0;
    EXPECT_EQ(PxnFeatureIntRangeQuery(serial, "AcquisitionFixedIntervalTime", &low, &high), 0);
    EXPECT_EQ(low, 5000) << "the exposure";
    EXPECT_EQ(PxnFeatureIntSet(serial, "AcquisitionFixedIntervalTime", 4999), PxnErrInvalidValue);
    EXPECT_EQ(PxnCameraClose(serial), 0);
}

TEST_F(LimitTest, OnlyOneCameraKnowsTheImageSize) {
    std::int64_t size = 0;
    EXPECT_EQ(PxnFeatureIntGet(camera, "ImageSize", &size), PxnErrNotFound);
    const PxnHandle usb = Open(kUsbCamera);
    EXPECT_EQ(GetInt(usb, "ImageSize"), GetInt(usb, "PayloadSize"));
    EXPECT_EQ(PxnCameraClose(usb), 0);
}

TEST_F(LimitTest, ImageFeaturesAreLockedWhileStreaming) {
    const char* locked[] = {"Width",           "Height",          "PixelFormat",
                            "BinningVertical", "ChunkModeActive", "GevSCPSPacketSize"};
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    for (const char* name : locked) {
        EXPECT_FALSE(IsWritable(camera, name)) << name;
    }
    EXPECT_TRUE(IsWritable(camera, "ExposureTime"));
    EXPECT_TRUE(IsWritable(camera, "OffsetX"));
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 320), PxnErrInvalidAccess);
    EXPECT_EQ(PxnCaptureEnd(camera), 0);
    for (const char* name : locked) {
        EXPECT_TRUE(IsWritable(camera, name)) << name;
    }
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), 0);
    EXPECT_FALSE(IsWritable(camera, "Width"));
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStop"), 0);
    EXPECT_TRUE(IsWritable(camera, "Width"));
}

TEST_F(LimitTest, PacketSizeIsAdjustedThroughTheStream) {
    const PxnHandle stream = InfoOf(camera).streamHandles[0];
    EXPECT_EQ(GetInt(camera, "GevSCPSPacketSize"), 1500);
    EXPECT_EQ(PxnFeatureCommandRun(stream, "GVSPAdjustPacketSize"), 0);
    PxnBool done = 0;
    EXPECT_EQ(PxnFeatureCommandIsDone(stream, "GVSPAdjustPacketSize", &done), 0);
    EXPECT_EQ(done, 1);
    EXPECT_EQ(GetInt(camera, "GevSCPSPacketSize"), 8228);
    EXPECT_EQ(GetInt(camera, "DeviceStreamChannelPacketSize"), 8228);
    EXPECT_EQ(GetInt(stream, "GVSPPacketSize"), 8228);
    const PxnHandle usb = Open(kUsbCamera);
    EXPECT_EQ(PxnFeatureCommandRun(InfoOf(usb).streamHandles[0], "GVSPAdjustPacketSize"),
              PxnErrNotFound);
    EXPECT_EQ(PxnCameraClose(usb), 0);
}

// ---- invalidation ----

// Notes what was invalidated, and reads the feature from inside the callback.
struct Listener {
    Counter calls;
    std::mutex mutex;
    std::vector<std::string> names;
    std::vector<std::int64_t> values;

    static void PXN_CALL OnInvalidation(PxnHandle handle, const char* name, void* context) {
        auto* self = static_cast<Listener*>(context);
        std::int64_t value = -1;
        PxnFeatureIntGet(handle, name, &value);
        {
            std::lock_guard lock(self->mutex);
            self->names.emplace_back(name);
            self->values.push_back(value);
        }
        self->calls.Add();
    }
    bool Heard(const std::string& name) {
        std::lock_guard lock(mutex);
        return std::find(names.begin(), names.end(), name) != names.end();
    }
};

TEST_F(LimitTest, DependentFeaturesAreInvalidated) {
    Listener listener;
    const char* expected[] = {"Width", "OffsetX", "PayloadSize", "LinePitch"};
    for (const char* name : expected) {
        ASSERT_EQ(
            PxnFeatureInvalidationRegister(camera, name, &Listener::OnInvalidation, &listener), 0);
    }
    ASSERT_EQ(PxnFeatureInvalidationRegister(camera, "DeviceUserID", &Listener::OnInvalidation,
                                             &listener),
              0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 320), 0);
    EXPECT_TRUE(listener.calls.WaitFor(4));
    Control("drain");
    for (const char* name : expected) {
        EXPECT_TRUE(listener.Heard(name)) << name;
    }
    EXPECT_FALSE(listener.Heard("DeviceUserID"));
    for (const char* name : expected) {
        EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, name, &Listener::OnInvalidation), 0);
    }
    const std::uint64_t before = listener.calls.Value();
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 640), 0);
    Control("drain");
    EXPECT_EQ(listener.calls.Value(), before);
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "DeviceUserID", &Listener::OnInvalidation),
              0);
}

TEST_F(LimitTest, StartsAndStopsAreToldBeforeTheyReturn) {
    std::atomic<int> calls{0};
    Control("clock stop"); // the starts and stops wait for the callback however long it takes
    const PxnInvalidationCallback slow = [](PxnHandle, const char*, void* context) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        ++*static_cast<std::atomic<int>*>(context);
    };
    ASSERT_EQ(PxnFeatureInvalidationRegister(camera, "Width", slow, &calls), 0);
    const auto toldBy = [&](const std::function<PxnError()>& entry) {
        const int before = calls;
        EXPECT_EQ(entry(), 0);
        return calls - before;
    };
    EXPECT_GT(toldBy([&] { return PxnCaptureStart(camera); }), 0);
    EXPECT_GT(toldBy([&] { return PxnFeatureCommandRun(camera, "AcquisitionStart"); }), 0);
    EXPECT_GT(toldBy([&] { return PxnFeatureCommandRun(camera, "AcquisitionStop"); }), 0);
    EXPECT_GT(toldBy([&] { return PxnFeatureCommandRun(camera, "AcquisitionAbort"); }), 0);
    EXPECT_GT(toldBy([&] { return PxnCaptureEnd(camera); }), 0);
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Width", slow), 0);
}

TEST_F(LimitTest, AStartDoesNotWaitForeverForACallbackThatWaitsForIt) {
    struct {
        Counter entered;
        Counter returned;
        std::atomic<bool> waitedInVain{false};
    } start;
    const PxnInvalidationCallback callback = [](PxnHandle, const char*, void* context) {
        auto& awaited = *static_cast<decltype(start)*>(context);
        awaited.entered.Add();
        if (!awaited.returned.WaitFor(1)) {
            awaited.waitedInVain = true;
        }
    };
    ASSERT_EQ(PxnFeatureInvalidationRegister(camera, "Width", callback, &start), 0);
    Control("clock stop");
    std::thread starter([&] {
        EXPECT_EQ(PxnCaptureStart(camera), 0);
        start.returned.Add();
    });
    EXPECT_TRUE(start.entered.WaitFor(1));
    EXPECT_TRUE(IsNextTime(1000 * kNanosecondsPerMillisecond));
    Control("clock advance 999");
    EXPECT_TRUE(IsNextTime(kNanosecondsPerMillisecond));
    EXPECT_EQ(start.returned.Value(), 0u);
    Control("clock advance 1");
    starter.join();
    EXPECT_EQ(PxnCaptureEnd(camera), 0);
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Width", callback), 0);
    EXPECT_FALSE(start.waitedInVain);
}

TEST_F(LimitTest, ACallbackFindsTheNewValue) {
    Listener listener;
    ASSERT_EQ(
        PxnFeatureInvalidationRegister(camera, "Height", &Listener::OnInvalidation, &listener), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Height", 100), 0);
    EXPECT_TRUE(listener.calls.WaitFor(1));
    Control("drain");
    EXPECT_EQ(listener.values.at(0), 100);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Height", 100), 0);
    Control("drain");
    EXPECT_EQ(listener.calls.Value(), 1u) << "the value did not change";
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Height", &Listener::OnInvalidation), 0);
}

TEST_F(LimitTest, TheCameraSideCanChangeAFeatureToo) {
    Listener listener;
    ASSERT_EQ(
        PxnFeatureInvalidationRegister(camera, "Height", &Listener::OnInvalidation, &listener), 0);
    Control(std::string("set ") + kGigECamera + " Height 200");
    EXPECT_TRUE(listener.calls.WaitFor(1));
    EXPECT_EQ(GetInt(camera, "Height"), 200);
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Height", &Listener::OnInvalidation), 0);
}

TEST_F(LimitTest, RegistrationsOfOneCallbackAreKeptApart) {
    Listener first;
    Listener second;
    for (Listener* one : {&first, &second}) {
        ASSERT_EQ(PxnFeatureInvalidationRegister(camera, "Height", &Listener::OnInvalidation, one),
                  0);
    }
    EXPECT_EQ(PxnFeatureIntSet(camera, "Height", 100), 0);
    EXPECT_TRUE(first.calls.WaitFor(1));
    EXPECT_TRUE(second.calls.WaitFor(1));
    Control("drain");
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Height", &Listener::OnInvalidation), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Height", 200), 0);
    EXPECT_TRUE(first.calls.WaitFor(2));
    Control("drain");
    EXPECT_EQ(second.calls.Value(), 1u) << "the newest went first";
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Height", &Listener::OnInvalidation), 0);
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Height", &Listener::OnInvalidation),
              PxnErrNotFound);
}

TEST_F(LimitTest, BadRegistrationsAreRefused) {
    EXPECT_EQ(PxnFeatureInvalidationRegister(camera, "x", &Listener::OnInvalidation, nullptr),
              PxnErrNotFound);
    EXPECT_EQ(PxnFeatureInvalidationRegister(camera, "Width", nullptr, nullptr),
              PxnErrBadParameter);
    EXPECT_EQ(PxnFeatureInvalidationRegister(camera, nullptr, &Listener::OnInvalidation, nullptr),
              PxnErrBadParameter);
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Width", nullptr), PxnErrBadParameter);
    EXPECT_EQ(PxnFeatureInvalidationUnregister(nullptr, "Width", &Listener::OnInvalidation),
              PxnErrBadHandle);
}

// Holds its callback until the test lets it go.
struct Gate {
    Counter entered;
    Counter released;
    std::atomic<bool> finished = false;
    PxnHandle camera = nullptr;
    PxnError unregistered = 1;
    PxnError closed = 1;

    static void PXN_CALL Hold(PxnHandle, const char*, void* context) {
        auto* self = static_cast<Gate*>(context);
        self->entered.Add();
        EXPECT_TRUE(self->released.WaitFor(1));
        self->finished = true;
    }
    static void PXN_CALL UnregisterMyself(PxnHandle handle, const char* name, void* context) {
        auto* self = static_cast<Gate*>(context);
        self->unregistered =
            PxnFeatureInvalidationUnregister(handle, name, &Gate::UnregisterMyself);
        self->entered.Add();
    }
    static void PXN_CALL CloseCamera(PxnHandle handle, const char*, void* context) {
        auto* self = static_cast<Gate*>(context);
        self->closed = PxnCameraClose(handle);
        self->entered.Add();
    }
};

TEST_F(LimitTest, UnregisteringWaitsForTheRunningCallback) {
    Gate gate;
    ASSERT_EQ(PxnFeatureInvalidationRegister(camera, "Height", &Gate::Hold, &gate), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Height", 100), 0);
    ASSERT_TRUE(gate.entered.WaitFor(1));
    std::thread release([&gate] { gate.released.Add(); });
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Height", &Gate::Hold), 0);
    EXPECT_TRUE(gate.finished);
    release.join();
}

TEST_F(LimitTest, ACallbackMayUnregisterItself) {
    Gate gate;
    ASSERT_EQ(PxnFeatureInvalidationRegister(camera, "Height", &Gate::UnregisterMyself, &gate), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Height", 100), 0);
    ASSERT_TRUE(gate.entered.WaitFor(1));
    EXPECT_EQ(gate.unregistered, 0);
}

TEST_F(LimitTest, AnInvalidationCallbackMayCloseTheCamera) {
    Gate gate;
    const PxnHandle usb = Open(kUsbCamera);
    ASSERT_EQ(PxnFeatureInvalidationRegister(usb, "Height", &Gate::CloseCamera, &gate), 0);
    EXPECT_EQ(PxnFeatureIntSet(usb, "Height", 100), 0);
    ASSERT_TRUE(gate.entered.WaitFor(1));
    EXPECT_EQ(gate.closed, 0);
    EXPECT_EQ(PxnCameraClose(usb), PxnErrBadHandle);
}

TEST_F(LimitTest, ShutdownInsideACallbackIsIgnored) {
    Gate gate;
    ASSERT_EQ(PxnFeatureInvalidationRegister(
                  camera, "Height",
                  [](PxnHandle, const char*, void* context) {
                      PxnShutdown();
                      static_cast<Gate*>(context)->entered.Add();
                  },
                  &gate),
              0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(PxnFeatureIntSet(camera, "Height", 100), 0);
    ASSERT_TRUE(gate.entered.WaitFor(1));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "PxnC: a shutdown inside a callback is ignored\n");
    EXPECT_EQ(GetInt(camera, "Height"), 100);
}

TEST_F(LimitTest, LockedFeaturesAreInvalidatedWhenStreamingBeginsAndEnds) {
    Listener listener;
    ASSERT_EQ(PxnFeatureInvalidationRegister(camera, "Width", &Listener::OnInvalidation, &listener),
              0);
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    EXPECT_TRUE(listener.calls.WaitFor(1));
    ASSERT_EQ(PxnCaptureEnd(camera), 0);
    EXPECT_TRUE(listener.calls.WaitFor(2));
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Width", &Listener::OnInvalidation), 0);
}

} // namespace
} // namespace simulator_tests
