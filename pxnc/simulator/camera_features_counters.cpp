// camera_features_counters.cpp - counters and timers
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr std::int64_t kLargestCount = 0xFFFFFFFF;

constexpr FeatureRow kCounterRows[] = {
    {"CounterSelector", Enum{"Counter0 Counter1"}, kExpert, "Counter to configure."},
    {"CounterEventSource", Enum{"Off FrameEnd FrameTrigger Line0 Line1"}, kExpert,
     "Event that is counted.",
     Extra{.selectors = "CounterSelector", .affects = "CounterValue CounterStatus"}},
    {"CounterEventActivation", Enum{"RisingEdge FallingEdge AnyEdge"}, kExpert,
     "Edge of the signal that is counted.", Extra{.selectors = "CounterSelector"}},
    {"CounterResetSource", Enum{"Off CounterTrigger AcquisitionStart Line0 Line1"}, kExpert,
     "Event that resets the counter.", Extra{.selectors = "CounterSelector"}},
    {"CounterFrameBase", Int{}, kInvisible | kReadOnly | kCustom,
     "Number of frames sent before the last reset of the counter.",
     Extra{.selectors = "CounterSelector"}},
    {"CounterValueAtReset", Int{}, kExpert | kReadOnly, "Value of the counter at its last reset.",
     Extra{.selectors = "CounterSelector"}},
    {"CounterValue", Int{.min = 0, .max = kLargestCount}, kExpert | kReadOnly,
     "Number of events counted so far.", Extra{.selectors = "CounterSelector", .pollingMs = 500}},
    {"CounterReset", Command{}, kExpert, "Resets the counter to 0.",
     Extra{.selectors = "CounterSelector", .affects = "CounterValue"}},
    {"CounterDuration", Int{.value = 1, .min = 1, .max = kLargestCount}, kExpert,
     "Number of events after which the counter completes.", Extra{.selectors = "CounterSelector"}},
    {"CounterStatus", Enum{"CounterIdle CounterTriggerWait CounterActive CounterCompleted"},
     kExpert | kReadOnly, "State of the counter.", Extra{.selectors = "CounterSelector"}},
};

constexpr FeatureRow kTimerRows[] = {
    {"TimerSelector", Enum{"Timer0 Timer1"}, kExpert, "Timer to configure."},
    {"TimerDuration", Float{.value = 100.0, .min = 1.0, .max = 10e6}, kExpert,
     "Duration of the pulse.", Extra{.unit = "µs", .selectors = "TimerSelector"}},
    {"TimerDelay", Float{.min = 0.0, .max = 10e6}, kExpert, "Delay from the trigger to the pulse.",
     Extra{.unit = "µs", .selectors = "TimerSelector"}},
    {"TimerTriggerSource", Enum{"Off AcquisitionStart FrameStart ExposureStart Line0 Line1"},
     kExpert, "Event that starts the timer.",
     Extra{.selectors = "TimerSelector", .affects = "TimerStatus"}},
    {"TimerTriggerActivation", Enum{"RisingEdge FallingEdge AnyEdge LevelHigh LevelLow"}, kExpert,
     "Edge or level of the signal that starts the timer.", Extra{.selectors = "TimerSelector"}},
    {"TimerStatus", Enum{"TimerIdle TimerTriggerWait TimerActive TimerCompleted"},
     kExpert | kReadOnly, "State of the timer.", Extra{.selectors = "TimerSelector"}},
    {"TimerReset", Command{}, kExpert, "Stops the timer.", Extra{.selectors = "TimerSelector"}},
};

// Only frames are counted; other events never occur.
void AttachCounters(Camera& camera) {
    IntFeature& base = camera.Get<Int>("CounterFrameBase");
    IntFeature& atReset = camera.Get<Int>("CounterValueAtReset");
    IntFeature& value = camera.Get<Int>("CounterValue");
    value.Computed([&camera, &base] {
        return camera.EnumIs("CounterEventSource", "FrameEnd") ? camera.SentFrames() - base.Get()
                                                               : std::int64_t{0};
    });
    camera.Get<Command>("CounterReset").Runs([&camera, &base, &atReset, &value] {
        atReset.Put(value.Get());
        base.Put(camera.SentFrames());
        return PxnErrSuccess;
    });
    camera.Get<Enum>("CounterStatus").Computed([&camera] {
        return camera.EnumIs("CounterEventSource", "Off") ? "CounterIdle" : "CounterActive";
    });
}

} // namespace

void AddCounterAndTimerControl(Camera& camera) {
    camera.AddTable("/CounterAndTimerControl", kCounterRows);
    camera.AddTable("/CounterAndTimerControl", kTimerRows);
    AttachCounters(camera);
    camera.Get<Enum>("TimerStatus").Computed([&camera] {
        return camera.EnumIs("TimerTriggerSource", "Off") ? "TimerIdle" : "TimerTriggerWait";
    });
}

} // namespace pxsim
