#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr const char* kDigitalIOControl = "/DigitalIOControl";
constexpr std::int64_t kLines = 4;

const EnumFeature& LineMode(Camera& camera) {
    return dynamic_cast<const EnumFeature&>(*camera.Find("LineMode"));
}

// Inputs rest low; outputs show what drives them; an inverter turns both round.
bool LevelOf(Camera& camera, std::int64_t line) {
    platform::MutexLock lock(camera.ValueMutex());
    bool level = false;
    if (LineMode(camera).IsFor(line, "Output")) {
        const auto& source = dynamic_cast<const EnumFeature&>(*camera.Find("LineSource"));
        const std::int64_t outputs =
            dynamic_cast<const IntFeature&>(*camera.Find("UserOutputValueAll")).Get();
        level = (source.IsFor(line, "UserOutput0") && (outputs & 1) != 0) ||
                (source.IsFor(line, "UserOutput1") && (outputs & 2) != 0) ||
                (source.IsFor(line, "AcquisitionActive") && camera.IsAcquiring());
    }
    return level != dynamic_cast<const BoolFeature&>(*camera.Find("LineInverter")).GetFor(line);
}

void AddLines(Camera& camera) {
    const auto output = [&camera] {
        return camera.EnumIs("LineMode", "Output");
    };
    camera.Enum("LineSelector")
        .Entries({"Line0", "Line1", "Line2", "Line3"})
        .In(kDigitalIOControl)
        .Text("Line that the features below belong to.");
    camera.Enum("LineMode")
        .Entries({"Input", "Output"})
        .SelectedBy("LineSelector")
        .ValueFor(2, "Output")
        .ValueFor(3, "Output")
        .In(kDigitalIOControl)
        .Affects({"LineSource", "LineDebounceTime", "LineStatus", "LineStatusAll"})
        .Text("Direction of the line.");
    camera.Bool("LineInverter")
        .SelectedBy("LineSelector")
        .In(kDigitalIOControl)
        .For(PxnVisibilityExpert)
        .Affects({"LineStatus", "LineStatusAll"})
        .Text("The signal is turned round.");
    camera.Enum("LineSource")
        .Entries({"Off", "ExposureActive", "FrameTriggerWait", "AcquisitionActive", "UserOutput0",
                  "UserOutput1", "Timer0Active", "Counter0Active"})
        .SelectedBy("LineSelector")
        .In(kDigitalIOControl)
        .AvailableWhen(output)
        .Affects({"LineStatus", "LineStatusAll"})
        .Text("Signal that drives the line.");
    camera.Float("LineDebounceTime")
        .SelectedBy("LineSelector")
        .Range(0.0, 10000.0)
        .Unit("µs")
        .In(kDigitalIOControl)
        .For(PxnVisibilityExpert)
        .Custom()
        .AvailableWhen([output] { return !output(); })
        .Text("Pulses shorter than this are ignored.");
    camera.Enum("LineFormat")
        .Entries({"TTL", "LVDS", "OptoCoupled", "OpenDrain"})
        .SelectedBy("LineSelector")
        .ValueFor(0, "OptoCoupled")
        .ValueFor(2, "OptoCoupled")
        .In(kDigitalIOControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Electrical form of the line.");
    camera.Bool("LineStatus")
        .SelectedBy("LineSelector")
        .Computed([&camera] { return LevelOf(camera, camera.EnumIntValue("LineSelector")); })
        .In(kDigitalIOControl)
        .ReadOnly()
        .Volatile(500)
        .Text("Level of the line.");
    camera.Int("LineStatusAll")
        .Computed([&camera] {
            std::int64_t all = 0;
            for (std::int64_t line = 0; line < kLines; ++line) {
                all |= LevelOf(camera, line) ? std::int64_t{1} << line : 0;
            }
            return all;
        })
        .Range(0, 15)
        .As("HexNumber")
        .In(kDigitalIOControl)
        .ReadOnly()
        .Volatile(500)
        .For(PxnVisibilityExpert)
        .Text("Levels of all lines, one bit each.");
}

void AddOutputs(Camera& camera) {
    IntFeature& all = camera.Int("UserOutputValueAll")
                          .Range(0, 3)
                          .As("HexNumber")
                          .In(kDigitalIOControl)
                          .For(PxnVisibilityExpert)
                          .Affects({"UserOutputValue", "LineStatus", "LineStatusAll"})
                          .Text("All user outputs, one bit each.");
    camera.Enum("UserOutputSelector")
        .Entries({"UserOutput0", "UserOutput1"})
        .In(kDigitalIOControl)
        .For(PxnVisibilityExpert)
        .Text("Output that the value belongs to.");
    const auto bit = [&camera] {
        return std::int64_t{1} << camera.EnumIntValue("UserOutputSelector");
    };
    camera.Bool("UserOutputValue")
        .SelectedBy("UserOutputSelector")
        .Computed([&all, bit] { return (all.Get() & bit()) != 0; })
        .Writes([&all, bit](bool value) {
            return all.Set(value ? all.Get() | bit() : all.Get() & ~bit());
        })
        .In(kDigitalIOControl)
        .For(PxnVisibilityExpert)
        .NotStored()
        .Text("Level of the output.");
}

} // namespace

void AddDigitalIoControl(Camera& camera) {
    AddLines(camera);
    AddOutputs(camera);
}

} // namespace pxsim
