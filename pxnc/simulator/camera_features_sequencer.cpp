// camera_features_sequencer.cpp - sets of values that the camera goes through
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

#include <any>
#include <map>
#include <memory>

namespace pxsim {
namespace {

constexpr std::int64_t kLastSet = 7;
constexpr const char* kSequenced[] = {"ExposureTime", "Gain", "BlackLevel", "OffsetX", "OffsetY"};

using Set = std::map<std::string, std::any>;

constexpr FeatureRow kSequencerRows[] = {
    {"SequencerMode", Enum{"Off On"}, kExpert | kLocked, "Enables the sequencer.",
     Extra{.affects = "SequencerConfigurationMode"}},
    {"SequencerConfigurationMode", Enum{"Off On"}, kExpert, "Enables changes to the sets.",
     Extra{.affects = "SequencerSetSave SequencerSetLoad SequencerFeatureEnable"}},
    {"SequencerFeatureSelector", Enum{}, kExpert, "Feature to include in the sets."},
    {"SequencerFeatureEnable", Bool{}, kExpert, "Includes the selected feature in the sets.",
     Extra{.selectors = "SequencerFeatureSelector"}},
    {"SequencerSetSelector", Int{.min = 0, .max = kLastSet}, kExpert, "Set to configure."},
    {"SequencerSetSave", Command{}, kExpert, "Saves the current values in the selected set.",
     Extra{.selectors = "SequencerSetSelector"}},
    {"SequencerSetLoad", Command{}, kExpert | kLocked, "Restores the values of the selected set.",
     Extra{.selectors = "SequencerSetSelector"}},
    {"SequencerSetStart", Int{.min = 0, .max = kLastSet}, kExpert,
     "Set with which the sequence starts."},
    {"SequencerPathSelector", Int{.min = 0, .max = 1}, kGuru, "Path out of the selected set.",
     Extra{.selectors = "SequencerSetSelector"}},
    {"SequencerSetNext", Int{.min = 0, .max = kLastSet}, kExpert,
     "Set to which the selected path leads.",
     Extra{.selectors = "SequencerSetSelector SequencerPathSelector"}},
    {"SequencerTriggerSource", Enum{"Off FrameStart ExposureStart Line0 Line1"}, kExpert,
     "Event that triggers the selected path.",
     Extra{.selectors = "SequencerSetSelector SequencerPathSelector"}},
};

} // namespace

void AddSequencerControl(Camera& camera) {
    camera.AddTable("/SequencerControl", kSequencerRows);
    auto sets = std::make_shared<std::map<std::int64_t, Set>>();
    const auto configuring = [&camera] {
        return camera.EnumIs("SequencerConfigurationMode", "On");
    };
    camera.At("SequencerConfigurationMode").WritableWhen([&camera] {
        return camera.EnumIs("SequencerMode", "Off");
    });
    camera.Get<Enum>("SequencerFeatureSelector").Entries(kSequenced);
    BoolFeature& enabled = camera.Get<Bool>("SequencerFeatureEnable");
    enabled.ValueFor(0, true).WritableWhen(configuring);
    camera.Get<Command>("SequencerSetSave")
        .Runs([&camera, &enabled, sets] {
            Set& set = (*sets)[camera.IntValue("SequencerSetSelector")];
            set.clear();
            for (std::size_t i = 0; i < std::size(kSequenced); ++i) {
                if (enabled.GetFor(static_cast<std::int64_t>(i))) {
                    set[kSequenced[i]] = camera.At(kSequenced[i]).Snapshot();
                }
            }
            return PxnErrSuccess;
        })
        .WritableWhen(configuring);
    camera.Get<Command>("SequencerSetLoad")
        .Runs([&camera, sets] {
            auto found = sets->find(camera.IntValue("SequencerSetSelector"));
            if (found == sets->end()) {
                return PxnErrNotAvailable;
            }
            for (const auto& [name, value] : found->second) {
                Feature& feature = camera.At(name.c_str());
                feature.Restore(value);
                camera.Invalidate(feature);
            }
            camera.FitRegion(); // the region may have changed since
            return PxnErrSuccess;
        })
        .WritableWhen(configuring);
}

} // namespace pxsim
