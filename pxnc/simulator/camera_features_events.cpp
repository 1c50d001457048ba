#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr const char* kEventControl = "/EventControl";

} // namespace

void AddEventControl(Camera& camera) {
    camera.Enum("EventSelector")
        .Entries({kCameraEventNames[0], kCameraEventNames[1], kCameraEventNames[2],
                  kCameraEventNames[3]})
        .In(kEventControl)
        .Text("Event that the notification belongs to.");
    camera.Enum("EventNotification")
        .Entries({"Off", "On"})
        .SelectedBy("EventSelector")
        .In(kEventControl)
        .OnChange([&camera] { camera.UpdateEventMask(); })
        .Text("The event is reported.");
    for (const char* event : kCameraEventNames) {
        const std::string name = std::string("Event") + event;
        const char* category =
            camera.Strings().Intern(std::string(kEventControl) + "/" + name + "Data");
        camera.Int(name.c_str())
            .In(category)
            .ReadOnly()
            .Volatile(0)
            .For(PxnVisibilityExpert)
            .Text("Events of this kind so far.");
        camera.Int((name + "Timestamp").c_str())
            .In(category)
            .ReadOnly()
            .Volatile(0)
            .Unit("ns")
            .For(PxnVisibilityExpert)
            .Text("The camera's clock at the last event.");
        camera.Int((name + "FrameID").c_str())
            .In(category)
            .ReadOnly()
            .Volatile(0)
            .For(PxnVisibilityExpert)
            .Text("Frame that the last event belongs to.");
    }
}

void Camera::UpdateEventMask() {
    platform::MutexLock lock(mutex);
    const auto& notification = dynamic_cast<const EnumFeature&>(*Find("EventNotification"));
    unsigned mask = 0;
    for (std::size_t event = 0; event < std::size(kCameraEventNames); ++event) {
        mask |= notification.IsFor(static_cast<std::int64_t>(event), "On") ? 1u << event : 0u;
    }
    eventMask = mask;
}

void Camera::RaiseEvent(CameraEvent event, std::uint64_t frameId) {
    const auto index = static_cast<std::size_t>(event);
    if ((eventMask & (1u << index)) == 0) {
        return;
    }
    platform::MutexLock lock(mutex);
    const std::string feature = std::string("Event") + kCameraEventNames[index];
    dynamic_cast<IntFeature&>(*Find((feature + "Timestamp").c_str()))
        .Put(static_cast<std::int64_t>(Timestamp()));
    dynamic_cast<IntFeature&>(*Find((feature + "FrameID").c_str()))
        .Put(static_cast<std::int64_t>(frameId));
    auto& count = dynamic_cast<IntFeature&>(*Find(feature.c_str()));
    count.Put(count.Get() + 1);
}

} // namespace pxsim
