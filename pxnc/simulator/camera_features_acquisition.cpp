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
constexpr double kDefaultRate = 100.0;
constexpr double kDefaultExposureUs = 5000.0;

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
    camera.Enum("AcquisitionMode")
        .Entries({"SingleFrame", "MultiFrame", "Continuous"})
        .Value("Continuous")
        .In(kAcquisitionControl)
        .LockedWhileStreaming()
        .Affects({"AcquisitionFrameCount"})
        .Text("How many frames an acquisition has.");
    camera.Int("AcquisitionFrameCount")
        .Value(1)
        .Range(1, 65535)
        .In(kAcquisitionControl)
        .LockedWhileStreaming()
        .AvailableWhen([&camera] { return camera.EnumIs("AcquisitionMode", "MultiFrame"); })
        .Text("Frames of a multi-frame acquisition.");
    camera.Command("AcquisitionStart")
        .Runs([&camera] { return camera.StartAcquisition(); })
        .StartsOrStops()
        .In(kAcquisitionControl)
        .Text("Starts sending frames.");
    camera.Command("AcquisitionStop")
        .Runs([&camera] { return camera.StopAcquisition(); })
        .StartsOrStops()
        .In(kAcquisitionControl)
        .Text("Stops after the frame that is being sent.");
    camera.Command("AcquisitionAbort")
        .Runs([&camera] { return camera.StopAcquisition(); })
        .StartsOrStops()
        .In(kAcquisitionControl)
        .For(PxnVisibilityExpert)
        .Text("Stops at once.");
    camera.Int("AcquisitionBurstFrameCount")
        .Value(1)
        .Range(1, 255)
        .In(kAcquisitionControl)
        .For(PxnVisibilityExpert)
        .LockedWhileStreaming()
        .Text("Frames for each trigger of a burst.");
    camera.Enum("AcquisitionStatusSelector")
        .Entries({"AcquisitionTriggerWait", "AcquisitionActive", "FrameActive"})
        .In(kAcquisitionControl)
        .For(PxnVisibilityExpert)
        .Text("State that the status shows.");
    camera.Bool("AcquisitionStatus")
        .SelectedBy("AcquisitionStatusSelector")
        .Computed([&camera] {
            const bool waits = camera.EnumIs("AcquisitionStatusSelector", "AcquisitionTriggerWait");
            return waits ? !camera.IsAcquiring() : camera.IsAcquiring();
        })
        .In(kAcquisitionControl)
        .ReadOnly()
        .Volatile(500)
        .For(PxnVisibilityExpert)
        .Text("The camera is in that state.");
    camera.Bool("SimulatorFreeRunning")
        .Value(camera.Setup().freeRunning)
        .In(kAcquisitionControl)
        .Custom()
        .For(PxnVisibilityGuru)
        .OnChange([&camera] { camera.UpdatePlan(); })
        .Text("Sends a frame as soon as a buffer is queued, whatever the frame rate.");
}

void AddTiming(Camera& camera) {
    camera.Enum("ExposureMode")
        .Entries({"Off", "Timed", "TriggerWidth"})
        .Value("Timed")
        .In(kAcquisitionControl)
        .EntryAvailableWhen("TriggerWidth",
                            [&camera] { return camera.EnumIs("TriggerMode", "On"); })
        .Affects({"ExposureTime"})
        .Text("What ends the exposure.");
    camera.Enum("ExposureAuto")
        .Entries({"Off", "Once", "Continuous"})
        .Value("Off")
        .In(kAcquisitionControl)
        .Affects({"ExposureTime"})
        .Text("Exposure found by the camera.");
    camera.Float("ExposureTime")
        .Value(kDefaultExposureUs)
        .Range(10.0, 10e6)
        .Unit("µs")
        .In(kAcquisitionControl)
        .WritableWhen([&camera] { return camera.EnumIs("ExposureAuto", "Off"); })
        .Affects({"AcquisitionFrameRate", "AcquisitionFixedIntervalTime"})
        .OnChange([&camera] { camera.LimitFrameRate(); })
        .Text("Time for which the sensor collects light.");
    camera.Bool("AcquisitionFrameRateEnable")
        .Value(true)
        .In(kAcquisitionControl)
        .Text("The frame rate below is kept; without it the camera still paces itself by it.");
    camera.Float("AcquisitionFrameRate")
        .Value(kDefaultRate)
        .Min([] { return kSlowestRate; })
        .Max([&camera] { return HighestRate(camera); })
        .Unit("Hz")
        .In(kAcquisitionControl)
        .Affects({"AcquisitionFixedIntervalTime"})
        .OnChange([&camera] { camera.UpdatePlan(); })
        .Text("Frames per second.");
    if (camera.Setup().kind == CameraKind::kSerial) {
        auto& rate = dynamic_cast<FloatFeature&>(*camera.Find("AcquisitionFrameRate"));
        camera.Int("AcquisitionFixedIntervalTime")
            .Computed([&rate] { return std::llround(1e6 / rate.Get()); })
            .Min([&rate] { return static_cast<std::int64_t>(std::ceil(1e6 / rate.UpperLimit())); })
            .Max([] { return static_cast<std::int64_t>(1e6 / kSlowestRate); })
            .Writes([&rate](std::int64_t interval) {
                rate.Put(1e6 / static_cast<double>(interval));
                return PxnErrSuccess;
            })
            .Unit("µs")
            .In(kAcquisitionControl)
            .Custom()
            .Text("Time from one frame to the next.");
    }
}

void AddTrigger(Camera& camera) {
    camera.Enum("TriggerSelector")
        .Entries({"FrameStart", "AcquisitionStart", "ExposureActive"})
        .In(kAcquisitionControl)
        .Text("Trigger that the features below belong to.");
    camera.Enum("TriggerMode")
        .Entries({"Off", "On"})
        .SelectedBy("TriggerSelector")
        .In(kAcquisitionControl)
        .Affects({"ExposureMode", "TriggerSoftware"})
        .OnChange([&camera] { camera.UpdatePlan(); })
        .Text("The trigger is used.");
    camera.Enum("TriggerSource")
        .Entries({"Software", "Line0", "Line1", "Line2", "Line3", "Counter0End", "Timer0End"})
        .SelectedBy("TriggerSelector")
        .In(kAcquisitionControl)
        .Affects({"TriggerSoftware", "TriggerActivation"})
        .Text("Where the trigger comes from.");
    camera.Enum("TriggerActivation")
        .Entries({"RisingEdge", "FallingEdge", "AnyEdge", "LevelHigh", "LevelLow"})
        .SelectedBy("TriggerSelector")
        .In(kAcquisitionControl)
        .AvailableWhen([&camera] { return !camera.EnumIs("TriggerSource", "Software"); })
        .Text("What of the signal triggers.");
    camera.Float("TriggerDelay")
        .Range(0.0, 1e6)
        .SelectedBy("TriggerSelector")
        .Unit("µs")
        .In(kAcquisitionControl)
        .For(PxnVisibilityExpert)
        .Text("Time from the signal to the trigger.");
    camera.Int("TriggerDivider")
        .Value(1)
        .Range(1, 256)
        .SelectedBy("TriggerSelector")
        .In(kAcquisitionControl)
        .For(PxnVisibilityExpert)
        .Text("Signals that make one trigger.");
    camera.Command("TriggerSoftware")
        .Runs([&camera] { return camera.SoftwareTrigger(); })
        .SelectedBy("TriggerSelector")
        .In(kAcquisitionControl)
        .WritableWhen([&camera] {
            return camera.EnumIs("TriggerMode", "On") && camera.EnumIs("TriggerSource", "Software");
        })
        .Text("Triggers once.");
}

} // namespace

void Camera::LimitFrameRate() {
    platform::MutexLock lock(mutex);
    auto& rate = dynamic_cast<FloatFeature&>(*Find("AcquisitionFrameRate"));
    rate.Put(std::min(rate.Get(), rate.UpperLimit()));
    UpdatePlan();
}

void AddAcquisitionControl(Camera& camera) {
    AddModes(camera);
    AddTrigger(camera);
    AddTiming(camera);
}

} // namespace pxsim
