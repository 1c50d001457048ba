#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr const char* kCounterAndTimerControl = "/CounterAndTimerControl";
constexpr std::int64_t kLargestCount = 0xFFFFFFFF;

// A counter that counts frames shows those since its reset; any other event never comes.
void AddCounters(Camera& camera) {
    camera.Enum("CounterSelector")
        .Entries({"Counter0", "Counter1"})
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Text("Counter that the features below belong to.");
    camera.Enum("CounterEventSource")
        .Entries({"Off", "FrameEnd", "FrameTrigger", "Line0", "Line1"})
        .SelectedBy("CounterSelector")
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Affects({"CounterValue", "CounterStatus"})
        .Text("What is counted.");
    camera.Enum("CounterEventActivation")
        .Entries({"RisingEdge", "FallingEdge", "AnyEdge"})
        .SelectedBy("CounterSelector")
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Text("What of a signal counts.");
    camera.Enum("CounterResetSource")
        .Entries({"Off", "CounterTrigger", "AcquisitionStart", "Line0", "Line1"})
        .SelectedBy("CounterSelector")
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Text("What sets the counter back.");
    IntFeature& base = camera.Int("CounterFrameBase")
                           .SelectedBy("CounterSelector")
                           .In(kCounterAndTimerControl)
                           .For(PxnVisibilityInvisible)
                           .ReadOnly()
                           .Custom()
                           .Text("Frames that were sent before the counter was set back.");
    IntFeature& atReset = camera.Int("CounterValueAtReset")
                              .SelectedBy("CounterSelector")
                              .In(kCounterAndTimerControl)
                              .For(PxnVisibilityExpert)
                              .ReadOnly()
                              .Text("Value when the counter was set back last.");
    IntFeature& value = camera.Int("CounterValue")
                            .SelectedBy("CounterSelector")
                            .Computed([&camera, &base] {
                                return camera.EnumIs("CounterEventSource", "FrameEnd")
                                           ? camera.SentFrames() - base.Get()
                                           : std::int64_t{0};
                            })
                            .Range(0, kLargestCount)
                            .In(kCounterAndTimerControl)
                            .ReadOnly()
                            .Volatile(500)
                            .For(PxnVisibilityExpert)
                            .Text("Events so far.");
    camera.Command("CounterReset")
        .SelectedBy("CounterSelector")
        .Runs([&camera, &base, &atReset, &value] {
            atReset.Put(value.Get());
            base.Put(camera.SentFrames());
            return PxnErrSuccess;
        })
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Affects({"CounterValue"})
        .Text("Sets the counter to 0.");
    camera.Int("CounterDuration")
        .SelectedBy("CounterSelector")
        .Value(1)
        .Range(1, kLargestCount)
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Text("Events after which the counter ends.");
    camera.Enum("CounterStatus")
        .Entries({"CounterIdle", "CounterTriggerWait", "CounterActive", "CounterCompleted"})
        .SelectedBy("CounterSelector")
        .Computed([&camera] {
            return camera.EnumIs("CounterEventSource", "Off") ? "CounterIdle" : "CounterActive";
        })
        .In(kCounterAndTimerControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("State of the counter.");
}

void AddTimers(Camera& camera) {
    camera.Enum("TimerSelector")
        .Entries({"Timer0", "Timer1"})
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Text("Timer that the features below belong to.");
    camera.Float("TimerDuration")
        .SelectedBy("TimerSelector")
        .Value(100.0)
        .Range(1.0, 10e6)
        .Unit("µs")
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Text("Length of the pulse.");
    camera.Float("TimerDelay")
        .SelectedBy("TimerSelector")
        .Range(0.0, 10e6)
        .Unit("µs")
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Text("Time from the trigger to the pulse.");
    camera.Enum("TimerTriggerSource")
        .Entries({"Off", "AcquisitionStart", "FrameStart", "ExposureStart", "Line0", "Line1"})
        .SelectedBy("TimerSelector")
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Affects({"TimerStatus"})
        .Text("What starts the timer.");
    camera.Enum("TimerTriggerActivation")
        .Entries({"RisingEdge", "FallingEdge", "AnyEdge", "LevelHigh", "LevelLow"})
        .SelectedBy("TimerSelector")
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Text("What of a signal starts the timer.");
    camera.Enum("TimerStatus")
        .Entries({"TimerIdle", "TimerTriggerWait", "TimerActive", "TimerCompleted"})
        .SelectedBy("TimerSelector")
        .Computed([&camera] {
            return camera.EnumIs("TimerTriggerSource", "Off") ? "TimerIdle" : "TimerTriggerWait";
        })
        .In(kCounterAndTimerControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("State of the timer.");
    camera.Command("TimerReset")
        .SelectedBy("TimerSelector")
        .In(kCounterAndTimerControl)
        .For(PxnVisibilityExpert)
        .Text("Stops the timer.");
}

} // namespace

void AddCounterAndTimerControl(Camera& camera) {
    AddCounters(camera);
    AddTimers(camera);
}

} // namespace pxsim
