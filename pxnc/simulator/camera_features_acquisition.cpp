// camera_features_acquisition.cpp - when the camera takes images: modes, triggers, exposure, rate
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

#include <algorithm>
#include <cmath>

namespace pxsim {
namespace {

constexpr const char* kAcquisitionControl = "/AcquisitionControl";
constexpr double kPixelsPerSecond = 1.2e9; // read out from the sensor
constexpr double kLineOverheadUs = 0.5;
constexpr double kSlowestRate = 0.1;

constexpr FeatureRow kModeRows[] = {
    {"AcquisitionMode", Enum{"SingleFrame MultiFrame Continuous", "Continuous"},
     kBeginner | kLocked, "Number of frames of an acquisition.",
     Extra{.affects = "AcquisitionFrameCount"}},
    {"AcquisitionFrameCount", Int{.value = 1, .min = 1, .max = 65535}, kBeginner | kLocked,
     "Number of frames of a multi-frame acquisition."},
    {"AcquisitionStart", Command{.startsOrStops = true}, kBeginner, "Starts sending frames."},
    {"AcquisitionStop", Command{.startsOrStops = true}, kBeginner,
     "Stops the acquisition after the current frame."},
    {"AcquisitionAbort", Command{.startsOrStops = true}, kExpert,
     "Stops the acquisition immediately."},
    {"AcquisitionBurstFrameCount", Int{.value = 1, .min = 1, .max = 255}, kExpert | kLocked,
     "Number of frames per burst trigger."},
    {"AcquisitionStatusSelector", Enum{"AcquisitionTriggerWait AcquisitionActive FrameActive"},
     kExpert, "State that AcquisitionStatus reports."},
    {"AcquisitionStatus", Bool{}, kExpert | kReadOnly,
     "Whether the camera is in the selected state.",
     Extra{.selectors = "AcquisitionStatusSelector", .pollingMs = 500}},
    {"SimulatorFreeRunning", Bool{}, kGuru | kCustom,
     "Sends a frame as soon as a buffer is queued, regardless of the frame rate."},
};

constexpr FeatureRow kTriggerRows[] = {
    {"TriggerSelector", Enum{"FrameStart AcquisitionStart ExposureActive"}, kBeginner,
     "Trigger to configure."},
    {"TriggerMode", Enum{"Off On"}, kBeginner, "Enables the selected trigger.",
     Extra{.selectors = "TriggerSelector", .affects = "ExposureMode TriggerSoftware"}},
    {"TriggerSource", Enum{"Software Line0 Line1 Line2 Line3 Counter0End Timer0End"}, kBeginner,
     "Source of the trigger signal.",
     Extra{.selectors = "TriggerSelector", .affects = "TriggerSoftware TriggerActivation"}},
    {"TriggerActivation", Enum{"RisingEdge FallingEdge AnyEdge LevelHigh LevelLow"}, kBeginner,
     "Edge or level of the signal that triggers.", Extra{.selectors = "TriggerSelector"}},
    {"TriggerDelay", Float{.min = 0.0, .max = 1e6}, kExpert,
     "Delay from the signal to the trigger.", Extra{.unit = "µs", .selectors = "TriggerSelector"}},
    {"TriggerDivider", Int{.value = 1, .min = 1, .max = 256}, kExpert,
     "Number of signals per trigger.", Extra{.selectors = "TriggerSelector"}},
    {"TriggerSoftware", Command{}, kBeginner, "Generates a software trigger.",
     Extra{.selectors = "TriggerSelector"}},
};

constexpr FeatureRow kTimingRows[] = {
    {"ExposureMode", Enum{"Off Timed TriggerWidth", "Timed"}, kBeginner,
     "How the exposure is controlled.", Extra{.affects = "ExposureTime"}},
    {"ExposureAuto", Enum{"Off Once Continuous"}, kBeginner, "Automatic exposure.",
     Extra{.affects = "ExposureTime"}},
    {"ExposureTime", Float{.value = 5000.0, .min = 10.0, .max = 10e6}, kBeginner,
     "Exposure time of the sensor.",
     Extra{.unit = "µs", .affects = "AcquisitionFrameRate AcquisitionFixedIntervalTime"}},
    {"AcquisitionFrameRateEnable", Bool{true}, kBeginner,
     "Enables the frame rate. The simulator keeps the frame rate in either case."},
    {"AcquisitionFrameRate", Float{.value = 100.0, .min = kSlowestRate}, kBeginner,
     "Number of frames per second.",
     Extra{.unit = "Hz", .affects = "AcquisitionFixedIntervalTime"}},
};

constexpr FeatureRow kIntervalRows[] = {
    {"AcquisitionFixedIntervalTime", Int{.max = static_cast<std::int64_t>(1e6 / kSlowestRate)},
     kBeginner | kCustom, "Interval between two frames.", Extra{.unit = "µs"}},
};

double ReadoutUs(Camera& camera) {
    const auto width = static_cast<double>(camera.IntValue("Width"));
    const auto height = static_cast<double>(camera.IntValue("Height"));
    return width * height / kPixelsPerSecond * 1e6 + height * kLineOverheadUs;
}

// Exposure of one frame overlaps the readout of the one before.
double HighestRate(Camera& camera) {
    double shortestUs = std::max(ReadoutUs(camera), camera.FloatValue("ExposureTime"));
    if (camera.EnumIs("DeviceLinkThroughputLimitMode", "On")) {
        const auto bytes = static_cast<double>(camera.PayloadBytes());
        const auto limit = static_cast<double>(camera.IntValue("DeviceLinkThroughputLimit"));
        shortestUs = std::max(shortestUs, bytes / limit * 1e6);
    }
    return std::max(kSlowestRate, 1e6 / shortestUs);
}

void AddModes(Camera& camera) {
    camera.AddTable(kAcquisitionControl, kModeRows);
    camera.At("AcquisitionFrameCount").AvailableWhen([&camera] {
        return camera.EnumIs("AcquisitionMode", "MultiFrame");
    });
    camera.Get<Command>("AcquisitionStart").Runs([&camera] { return camera.StartAcquisition(); });
    camera.Get<Command>("AcquisitionStop").Runs([&camera] { return camera.StopAcquisition(); });
    camera.Get<Command>("AcquisitionAbort").Runs([&camera] { return camera.StopAcquisition(); });
    camera.Get<Bool>("AcquisitionStatus").Computed([&camera] {
        const bool waits = camera.EnumIs("AcquisitionStatusSelector", "AcquisitionTriggerWait");
        return waits ? !camera.IsAcquiring() : camera.IsAcquiring();
    });
    camera.Get<Bool>("SimulatorFreeRunning").Value(camera.Setup().freeRunning).OnChange([&camera] {
        camera.UpdatePlan();
    });
}

void AddTriggers(Camera& camera) {
    camera.AddTable(kAcquisitionControl, kTriggerRows);
    camera.At("TriggerMode").OnChange([&camera] { camera.UpdatePlan(); });
    camera.At("TriggerActivation").AvailableWhen([&camera] {
        return !camera.EnumIs("TriggerSource", "Software");
    });
    camera.Get<Command>("TriggerSoftware")
        .Runs([&camera] { return camera.SoftwareTrigger(); })
        .WritableWhen([&camera] {
            return camera.EnumIs("TriggerMode", "On") && camera.EnumIs("TriggerSource", "Software");
        });
}

void AddTiming(Camera& camera) {
    camera.AddTable(kAcquisitionControl, kTimingRows);
    camera.Get<Enum>("ExposureMode").EntryAvailableWhen("TriggerWidth", [&camera] {
        return camera.EnumIs("TriggerMode", "On");
    });
    camera.At("ExposureTime")
        .WritableWhen([&camera] { return camera.EnumIs("ExposureAuto", "Off"); })
        .OnChange([&camera] { camera.LimitFrameRate(); });
    camera.Get<Float>("AcquisitionFrameRate")
        .Max([&camera] { return HighestRate(camera); })
        .OnChange([&camera] { camera.UpdatePlan(); });
}

void AddInterval(Camera& camera) {
    camera.AddTable(kAcquisitionControl, kIntervalRows);
    FloatFeature& rate = camera.Get<Float>("AcquisitionFrameRate");
    camera.Get<Int>("AcquisitionFixedIntervalTime")
        .Computed([&rate] { return std::llround(1e6 / rate.Get()); })
        .Min([&rate] { return static_cast<std::int64_t>(std::ceil(1e6 / rate.UpperLimit())); })
        .Writes([&rate](std::int64_t interval) {
            rate.Put(1e6 / static_cast<double>(interval));
            return PxnErrSuccess;
        });
}

} // namespace

void Camera::LimitFrameRate() {
    platform::MutexLock lock(mutex);
    FloatFeature& rate = Get<Float>("AcquisitionFrameRate");
    rate.Put(std::min(rate.Get(), rate.UpperLimit()));
    UpdatePlan();
}

void AddAcquisitionControl(Camera& camera) {
    AddModes(camera);
    AddTriggers(camera);
    AddTiming(camera);
    if (camera.Setup().kind == CameraKind::kSerial) {
        AddInterval(camera);
    }
}

} // namespace pxsim
