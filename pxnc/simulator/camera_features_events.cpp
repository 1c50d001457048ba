// camera_features_events.cpp - what the camera reports while it works, as features
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr FeatureRow kEventRows[] = {
    {"EventSelector", Enum{}, kBeginner, "Event to enable or disable."},
    {"EventNotification", Enum{"Off On"}, kBeginner, "Enables notification of the selected event.",
     Extra{.selectors = "EventSelector"}},
};

void AddEventData(Camera& camera, const std::string& event) {
    const std::string timestamp = event + "Timestamp";
    const std::string frameId = event + "FrameID";
    const FeatureRow rows[] = {
        {event.c_str(), Int{}, kExpert | kReadOnly, "Number of events of this type so far.",
         Extra{.pollingMs = 0}},
        {timestamp.c_str(), Int{}, kExpert | kReadOnly,
         "Time of the last event on the camera's clock.", Extra{.unit = "ns", .pollingMs = 0}},
        {frameId.c_str(), Int{}, kExpert | kReadOnly, "Identifier of the frame of the last event.",
         Extra{.pollingMs = 0}},
    };
    camera.AddTable(("/EventControl/" + event + "Data").c_str(), rows);
}

} // namespace

void AddEventControl(Camera& camera) {
    camera.AddTable("/EventControl", kEventRows);
    camera.Get<Enum>("EventSelector").Entries(kCameraEventNames);
    camera.At("EventNotification").OnChange([&camera] { camera.UpdateEventMask(); });
    for (const char* event : kCameraEventNames) {
        AddEventData(camera, std::string("Event") + event);
    }
}

void Camera::UpdateEventMask() {
    platform::MutexLock lock(mutex);
    const EnumFeature& notification = Get<Enum>("EventNotification");
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
    Get<Int>((feature + "Timestamp").c_str()).Put(static_cast<std::int64_t>(Timestamp()));
    Get<Int>((feature + "FrameID").c_str()).Put(static_cast<std::int64_t>(frameId));
    IntFeature& count = Get<Int>(feature.c_str());
    count.Put(count.Get() + 1);
}

} // namespace pxsim
