#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr const char* kUserSetControl = "/UserSetControl";

} // namespace

void AddUserSetControl(Camera& camera) {
    const auto selected = [&camera] {
        return static_cast<std::size_t>(camera.EnumIntValue("UserSetSelector"));
    };
    const auto writable = [&camera] {
        return !camera.EnumIs("UserSetSelector", "Default");
    };
    camera.Enum("UserSetSelector")
        .Entries({"Default", "UserSet1", "UserSet2", "UserSet3"})
        .In(kUserSetControl)
        .NotStored()
        .Affects({"UserSetSave"})
        .Text("Set that is loaded or saved.");
    camera.String("UserSetDescription")
        .SelectedBy("UserSetSelector")
        .ValueFor(0, "Values at power-on")
        .In(kUserSetControl)
        .For(PxnVisibilityExpert)
        .NotStored()
        .WritableWhen(writable)
        .Text("What the set is for.");
    camera.Command("UserSetLoad")
        .SelectedBy("UserSetSelector")
        .Runs([&camera, selected] {
            camera.LoadUserSet(selected());
            return PxnErrSuccess;
        })
        .In(kUserSetControl)
        .LockedWhileStreaming()
        .Text("Gives all features the values of the set.");
    camera.Command("UserSetSave")
        .SelectedBy("UserSetSelector")
        .Runs([&camera, selected] {
            camera.SaveUserSet(selected());
            return PxnErrSuccess;
        })
        .In(kUserSetControl)
        .WritableWhen(writable)
        .Text("Keeps the values of all features in the set.");
    camera.Enum("UserSetDefault")
        .Entries({"Default", "UserSet1", "UserSet2", "UserSet3"})
        .In(kUserSetControl)
        .NotStored()
        .Text("Set that is loaded at power-on.");
}

} // namespace pxsim
