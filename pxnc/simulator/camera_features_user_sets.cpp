// camera_features_user_sets.cpp - the saved states of the camera
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr FeatureRow kUserSetRows[] = {
    {"UserSetSelector", Enum{"Default UserSet1 UserSet2 UserSet3"}, kBeginner | kNotStored,
     "User set to load or save.", Extra{.affects = "UserSetSave"}},
    {"UserSetDescription", String{}, kExpert | kNotStored, "Description of the selected set.",
     Extra{.selectors = "UserSetSelector"}},
    {"UserSetLoad", Command{}, kBeginner | kLocked,
     "Restores the values of all features from the selected set.",
     Extra{.selectors = "UserSetSelector"}},
    {"UserSetSave", Command{}, kBeginner, "Saves the values of all features in the selected set.",
     Extra{.selectors = "UserSetSelector"}},
    {"UserSetDefault", Enum{"Default UserSet1 UserSet2 UserSet3"}, kBeginner | kNotStored,
     "User set that is loaded at power-on."},
};

} // namespace

void AddUserSetControl(Camera& camera) {
    camera.AddTable("/UserSetControl", kUserSetRows);
    const auto selected = [&camera] {
        return static_cast<std::size_t>(camera.EnumIntValue("UserSetSelector"));
    };
    const auto writable = [&camera] {
        return !camera.EnumIs("UserSetSelector", "Default");
    };
    camera.Get<String>("UserSetDescription")
        .ValueFor(0, "Values at power-on")
        .WritableWhen(writable);
    camera.Get<Command>("UserSetLoad").Runs([&camera, selected] {
        camera.LoadUserSet(selected());
        return PxnErrSuccess;
    });
    camera.Get<Command>("UserSetSave")
        .Runs([&camera, selected] {
            camera.SaveUserSet(selected());
            return PxnErrSuccess;
        })
        .WritableWhen(writable);
}

} // namespace pxsim
