// camera_features_io.cpp - the camera's digital lines and user outputs
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr std::int64_t kLines = 4;

constexpr FeatureRow kLineRows[] = {
    {"LineSelector", Enum{"Line0 Line1 Line2 Line3"}, kBeginner, "Line to configure."},
    {"LineMode", Enum{"Input Output"}, kBeginner, "Direction of the line.",
     Extra{.selectors = "LineSelector",
           .affects = "LineSource LineDebounceTime LineStatus LineStatusAll"}},
    {"LineInverter", Bool{}, kExpert, "Inverts the signal of the line.",
     Extra{.selectors = "LineSelector", .affects = "LineStatus LineStatusAll"}},
    {"LineSource",
     Enum{"Off ExposureActive FrameTriggerWait AcquisitionActive UserOutput0 UserOutput1 "
          "Timer0Active Counter0Active"},
     kBeginner, "Signal that drives the line.",
     Extra{.selectors = "LineSelector", .affects = "LineStatus LineStatusAll"}},
    {"LineDebounceTime", Float{.min = 0.0, .max = 10000.0}, kExpert | kCustom,
     "Pulses shorter than this are ignored.", Extra{.unit = "µs", .selectors = "LineSelector"}},
    {"LineFormat", Enum{"TTL LVDS OptoCoupled OpenDrain"}, kExpert | kReadOnly,
     "Electrical format of the line.", Extra{.selectors = "LineSelector"}},
    {"LineStatus", Bool{}, kBeginner | kReadOnly, "Level of the line.",
     Extra{.selectors = "LineSelector", .pollingMs = 500}},
    {"LineStatusAll", Int{.min = 0, .max = 15}, kExpert | kReadOnly,
     "Levels of all lines, one bit each.", Extra{.representation = "HexNumber", .pollingMs = 500}},
};

constexpr FeatureRow kOutputRows[] = {
    {"UserOutputValueAll", Int{.min = 0, .max = 3}, kExpert,
     "Levels of all user outputs, one bit each.",
     Extra{.representation = "HexNumber", .affects = "UserOutputValue LineStatus LineStatusAll"}},
    {"UserOutputSelector", Enum{"UserOutput0 UserOutput1"}, kExpert, "User output to set."},
    {"UserOutputValue", Bool{}, kExpert | kNotStored, "Level of the selected user output.",
     Extra{.selectors = "UserOutputSelector"}},
};

// Inputs are low, outputs follow their source; an inverter inverts either.
bool LevelOf(Camera& camera, std::int64_t line) {
    platform::MutexLock lock(camera.ValueMutex());
    bool level = false;
    if (camera.Get<Enum>("LineMode").IsFor(line, "Output")) {
        const EnumFeature& source = camera.Get<Enum>("LineSource");
        const std::int64_t outputs = camera.IntValue("UserOutputValueAll");
        level = (source.IsFor(line, "UserOutput0") && (outputs & 1) != 0) ||
                (source.IsFor(line, "UserOutput1") && (outputs & 2) != 0) ||
                (source.IsFor(line, "AcquisitionActive") && camera.IsAcquiring());
    }
    return level != camera.Get<Bool>("LineInverter").GetFor(line);
}

std::int64_t AllLevels(Camera& camera) {
    std::int64_t all = 0;
    for (std::int64_t line = 0; line < kLines; ++line) {
        all |= LevelOf(camera, line) ? std::int64_t{1} << line : 0;
    }
    return all;
}

void AddLines(Camera& camera) {
    camera.AddTable("/DigitalIOControl", kLineRows);
    const auto output = [&camera] {
        return camera.EnumIs("LineMode", "Output");
    };
    camera.Get<Enum>("LineMode").ValueFor(2, "Output").ValueFor(3, "Output");
    camera.At("LineSource").AvailableWhen(output);
    camera.At("LineDebounceTime").AvailableWhen([output] { return !output(); });
    camera.Get<Enum>("LineFormat").ValueFor(0, "OptoCoupled").ValueFor(2, "OptoCoupled");
    camera.Get<Bool>("LineStatus").Computed([&camera] {
        return LevelOf(camera, camera.EnumIntValue("LineSelector"));
    });
    camera.Get<Int>("LineStatusAll").Computed([&camera] { return AllLevels(camera); });
}

void AddOutputs(Camera& camera) {
    camera.AddTable("/DigitalIOControl", kOutputRows);
    IntFeature& all = camera.Get<Int>("UserOutputValueAll");
    const auto bit = [&camera] {
        return std::int64_t{1} << camera.EnumIntValue("UserOutputSelector");
    };
    camera.Get<Bool>("UserOutputValue")
        .Computed([&all, bit] { return (all.Get() & bit()) != 0; })
        .Writes([&all, bit](bool value) {
            return all.Set(value ? all.Get() | bit() : all.Get() & ~bit());
        });
}

} // namespace

void AddDigitalIoControl(Camera& camera) {
    AddLines(camera);
    AddOutputs(camera);
}

} // namespace pxsim
