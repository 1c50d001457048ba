#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

#include <limits>

namespace pxsim {
namespace {

constexpr std::int64_t kWord = 0xFFFFFFFF;

// One of the many that a host may be tried with, of a type by turns.
void AddExtra(Camera& camera, std::uint32_t index) {
    const std::string text = "SimulatorExtra" + std::to_string(index);
    const char* name = text.c_str();
    const char* category =
        camera.Strings().Intern("/SimulatorControl/Group" + std::to_string(index / 100));
    const auto describe = [category](auto& feature) {
        feature.In(category).Custom().For(PxnVisibilityGuru).Text("One of many.");
    };
    switch (index % 5) {
    case 0:
        return describe(camera.Int(name).Value(index).Range(0, kWord));
    case 1:
        return describe(camera.Float(name).Value(index).Range(0.0, 1e9));
    case 2:
        return describe(camera.Enum(name).Entries({"First", "Second", "Third"}));
    case 3:
        return describe(camera.String(name).Value(text));
    default:
        return describe(camera.Bool(name));
    }
}

} // namespace

void AddActionControl(Camera& camera) {
    constexpr const char* kActionControl = "/ActionControl";
    camera.Enum("ActionUnconditionalMode")
        .Entries({"Off", "On"})
        .In(kActionControl)
        .For(PxnVisibilityGuru)
        .Text("Actions are taken from anybody.");
    camera.Int("ActionDeviceKey")
        .Range(0, kWord)
        .As("HexNumber")
        .In(kActionControl)
        .For(PxnVisibilityGuru)
        .WriteOnly()
        .Text("Key that an action must know.");
    camera.Int("ActionQueueSize")
        .Value(16)
        .In(kActionControl)
        .For(PxnVisibilityGuru)
        .ReadOnly()
        .Text("Actions that can wait.");
    camera.Int("ActionSelector")
        .Range(0, 1)
        .In(kActionControl)
        .For(PxnVisibilityGuru)
        .Text("Action that the features below belong to.");
    camera.Int("ActionGroupKey")
        .SelectedBy("ActionSelector")
        .Range(0, kWord)
        .As("HexNumber")
        .In(kActionControl)
        .For(PxnVisibilityGuru)
        .Text("Group that the action is for.");
    camera.Int("ActionGroupMask")
        .SelectedBy("ActionSelector")
        .Value(kWord)
        .Range(0, kWord)
        .As("HexNumber")
        .In(kActionControl)
        .For(PxnVisibilityGuru)
        .Text("Members of the group that the action is for.");
}

void AddSimulatorControl(Camera& camera) {
    constexpr const char* kSimulatorControl = "/SimulatorControl";
    camera.Int("SimulatorWideInteger")
        .Value(-1)
        .Range(std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max())
        .In(kSimulatorControl)
        .Custom()
        .For(PxnVisibilityGuru)
        .Text("Takes any integer.");
    camera.Int("SimulatorSteppedInteger")
        .Value(-7)
        .Range(-10, 20, 3)
        .In(kSimulatorControl)
        .Custom()
        .For(PxnVisibilityGuru)
        .Text("Starts below zero and moves in steps of three.");
    camera.Float("SimulatorFloat")
        .Value(0.5)
        .Range(-1e12, 1e12)
        .As("PureNumber")
        .Unit("m/s²")
        .In(kSimulatorControl)
        .Custom()
        .For(PxnVisibilityGuru)
        .Text("Takes large and small numbers.");
    camera.String("SimulatorText")
        .Value("Grüße aus dem Labor: 25 °C, ±3 µm")
        .MaxLength(255)
        .In(kSimulatorControl)
        .Custom()
        .For(PxnVisibilityGuru)
        .Text("A text with more than ASCII: äöü €.");
    camera.Enum("SimulatorClosedChoice")
        .Entries({"Present", "Absent", "AlsoAbsent"})
        .EntryAvailableWhen("Absent", [] { return false; })
        .EntryAvailableWhen("AlsoAbsent", [] { return false; })
        .In(kSimulatorControl)
        .Custom()
        .For(PxnVisibilityGuru)
        .Text("Most of its entries are not available.");
    for (std::uint32_t index = 0; index < camera.Setup().extraFeatures; ++index) {
        AddExtra(camera, index);
    }
}

} // namespace pxsim
