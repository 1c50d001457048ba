#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

#include <any>
#include <map>
#include <memory>

namespace pxsim {
namespace {

constexpr const char* kSequencerControl = "/SequencerControl";
constexpr std::int64_t kSets = 8;
constexpr const char* kSequenced[] = {"ExposureTime", "Gain", "BlackLevel", "OffsetX", "OffsetY"};

using Set = std::map<std::string, std::any>;

} // namespace

void AddSequencerControl(Camera& camera) {
    auto sets = std::make_shared<std::map<std::int64_t, Set>>();
    const auto configuring = [&camera] {
        return camera.EnumIs("SequencerConfigurationMode", "On");
    };
    camera.Enum("SequencerMode")
        .Entries({"Off", "On"})
        .In(kSequencerControl)
        .For(PxnVisibilityExpert)
        .LockedWhileStreaming()
        .Affects({"SequencerConfigurationMode"})
        .Text("The sequencer is used.");
    camera.Enum("SequencerConfigurationMode")
        .Entries({"Off", "On"})
        .In(kSequencerControl)
        .For(PxnVisibilityExpert)
        .WritableWhen([&camera] { return camera.EnumIs("SequencerMode", "Off"); })
        .Affects({"SequencerSetSave", "SequencerSetLoad", "SequencerFeatureEnable"})
        .Text("The sets can be changed.");
    camera.Enum("SequencerFeatureSelector")
        .Entries({kSequenced[0], kSequenced[1], kSequenced[2], kSequenced[3], kSequenced[4]})
        .In(kSequencerControl)
        .For(PxnVisibilityExpert)
        .Text("Feature that may be part of the sets.");
    BoolFeature& enabled = camera.Bool("SequencerFeatureEnable")
                               .SelectedBy("SequencerFeatureSelector")
                               .ValueFor(0, true)
                               .In(kSequencerControl)
                               .For(PxnVisibilityExpert)
                               .WritableWhen(configuring)
                               .Text("The feature is part of the sets.");
    camera.Int("SequencerSetSelector")
        .Range(0, kSets - 1)
        .In(kSequencerControl)
        .For(PxnVisibilityExpert)
        .Text("Set that the features below belong to.");
    camera.Command("SequencerSetSave")
        .SelectedBy("SequencerSetSelector")
        .Runs([&camera, &enabled, sets] {
            Set& set = (*sets)[camera.IntValue("SequencerSetSelector")];
            set.clear();
            for (std::size_t i = 0; i < std::size(kSequenced); ++i) {
                if (enabled.GetFor(static_cast<std::int64_t>(i))) {
                    set[kSequenced[i]] = camera.Find(kSequenced[i])->Snapshot();
                }
            }
            return PxnErrSuccess;
        })
        .In(kSequencerControl)
        .For(PxnVisibilityExpert)
        .WritableWhen(configuring)
        .Text("Keeps the present values in the set.");
    camera.Command("SequencerSetLoad")
        .SelectedBy("SequencerSetSelector")
        .Runs([&camera, sets] {
            auto found = sets->find(camera.IntValue("SequencerSetSelector"));
            if (found == sets->end()) {
                return PxnErrNotAvailable;
            }
            for (const auto& [name, value] : found->second) {
                Feature* feature = camera.Find(name.c_str());
                feature->Restore(value);
                camera.Invalidate(*feature);
            }
            camera.FitRegion(); // the region may have changed since
            return PxnErrSuccess;
        })
        .In(kSequencerControl)
        .For(PxnVisibilityExpert)
        .WritableWhen(configuring)
        .LockedWhileStreaming()
        .Text("Gives the features the values of the set.");
    camera.Int("SequencerSetStart")
        .Range(0, kSets - 1)
        .In(kSequencerControl)
        .For(PxnVisibilityExpert)
        .Text("Set that the sequence begins with.");
    camera.Int("SequencerPathSelector")
        .SelectedBy("SequencerSetSelector")
        .Range(0, 1)
        .In(kSequencerControl)
        .For(PxnVisibilityGuru)
        .Text("Way out of the set.");
    camera.Int("SequencerSetNext")
        .SelectedBy("SequencerSetSelector")
        .SelectedBy("SequencerPathSelector")
        .Range(0, kSets - 1)
        .In(kSequencerControl)
        .For(PxnVisibilityExpert)
        .Text("Set that follows.");
    camera.Enum("SequencerTriggerSource")
        .Entries({"Off", "FrameStart", "ExposureStart", "Line0", "Line1"})
        .SelectedBy("SequencerSetSelector")
        .SelectedBy("SequencerPathSelector")
        .In(kSequencerControl)
        .For(PxnVisibilityExpert)
        .Text("What leads to the next set.");
}

} // namespace pxsim
