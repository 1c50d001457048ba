// camera_features_user_sets.cpp - the saved states of the camera
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr FeatureRow kUserSetRows[] = {
    {"UserSetSelector", Enum{"Default UserSet1 UserSet2 UserSet3"}, kBeginner | kNotStored,
     "Set that is loaded or saved.", Extra{.affects = "UserSetSave"}},
    {"UserSetDescription", String{}, kExpert | kNotStored, "What the set is for.",
     Extra{.selectors = "UserSetSelector"}},
    {"UserSetLoad", Command{}, kBeginner | kLocked, "Gives all features the values of the set.",
     Extra{.selectors = "UserSetSelector"}},
    {"UserSetSave", Command{}, kBeginner, "Keeps the values of all features in the set.",
     Extra{.selectors = "UserSetSelector"}},
    {"UserSetDefault", Enum{"Default UserSet1 UserSet2 UserSet3"}, kBeginner | kNotStored,
     "Set that is loaded at power-on."},
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
