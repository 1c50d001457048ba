// camera_features_actions.cpp - action commands and the features for testing hosts
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr std::int64_t kWord = 0xFFFFFFFF;

constexpr FeatureRow kActionRows[] = {
    {"ActionUnconditionalMode", Enum{"Off On"}, kGuru, "Accepts action commands from any host."},
    {"ActionDeviceKey", Int{.min = 0, .max = kWord}, kGuru | kWriteOnly,
     "Key that an action command must contain.", Extra{.representation = "HexNumber"}},
    {"ActionQueueSize", Int{16}, kGuru | kReadOnly,
     "Number of action commands that can be queued."},
    {"ActionSelector", Int{.min = 0, .max = 1}, kGuru, "Action to configure."},
    {"ActionGroupKey", Int{.min = 0, .max = kWord}, kGuru,
     "Group of devices that the action addresses.",
     Extra{.representation = "HexNumber", .selectors = "ActionSelector"}},
    {"ActionGroupMask", Int{.value = kWord, .min = 0, .max = kWord}, kGuru,
     "Mask of the group members that the action addresses.",
     Extra{.representation = "HexNumber", .selectors = "ActionSelector"}},
};

constexpr FeatureRow kSimulatorRows[] = {
    {"SimulatorWideInteger", Int{-1}, kGuru | kCustom, "Accepts any 64-bit integer."},
    {"SimulatorSteppedInteger", Int{.value = -7, .min = -10, .max = 20, .step = 3}, kGuru | kCustom,
     "Starts below zero and has an increment of three."},
    {"SimulatorFloat", Float{.value = 0.5, .min = -1e12, .max = 1e12}, kGuru | kCustom,
     "Accepts large and small numbers.", Extra{.unit = "m/s²", .representation = "PureNumber"}},
    {"SimulatorText", String{"Grüße aus dem Labor: 25 °C, ±3 µm", 255}, kGuru | kCustom,
     "A text with characters outside ASCII: äöü €."},
    {"SimulatorClosedChoice", Enum{"Present Absent AlsoAbsent"}, kGuru | kCustom,
     "Most of its entries are not available."},
};

// One of many features to test hosts with; the types take turns.
void AddExtra(Camera& camera, std::uint32_t index) {
    const std::string name = "SimulatorExtra" + std::to_string(index);
    const decltype(FeatureRow::type) types[] = {
        Int{.value = index, .min = 0, .max = kWord},
        Float{.value = static_cast<double>(index), .min = 0.0, .max = 1e9},
        Enum{"First Second Third"}, String{name.c_str()}, Bool{}};
    const FeatureRow rows[] = {
        {name.c_str(), types[index % std::size(types)], kGuru | kCustom, "One of many features."},
    };
    const std::string category = "/SimulatorControl/Group" + std::to_string(index / 100);
    camera.AddTable(category.c_str(), rows);
}

} // namespace

void AddActionControl(Camera& camera) {
    camera.AddTable("/ActionControl", kActionRows);
}

void AddSimulatorControl(Camera& camera) {
    camera.AddTable("/SimulatorControl", kSimulatorRows);
    camera.Get<Enum>("SimulatorClosedChoice")
        .EntryAvailableWhen("Absent", [] { return false; })
        .EntryAvailableWhen("AlsoAbsent", [] { return false; });
    for (std::uint32_t index = 0; index < camera.Setup().extraFeatures; ++index) {
        AddExtra(camera, index);
    }
}

} // namespace pxsim
