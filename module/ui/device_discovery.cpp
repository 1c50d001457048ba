// device_discovery.cpp - how a device finder hears of cameras and interfaces
#include "ui/device_discovery.h"

#include "sdk/no_throw.h"

namespace pyxen {

namespace {

constexpr const char* kInterfaceFeature = "EventInterfaceDiscovery";
constexpr const char* kCameraFeature = "EventCameraDiscovery";

} // namespace

void DeviceDiscovery::Register(const Post& post) {
    interfaces = Subscribe(Event::kInterface, post);
    cameras = Subscribe(Event::kCamera, post);
}

void DeviceDiscovery::Unregister() {
    interfaces.Unsubscribe();
    cameras.Unsubscribe();
}

InvalidationSubscription DeviceDiscovery::Subscribe(Event event, const Post& post) {
    return NoThrow(InvalidationSubscription(), [&] {
        return InvalidationHub::Subscribe(
            api, InvalidationChannel::kFinderDiscovery, PXN_SYSTEM_HANDLE,
            event == Event::kInterface ? kInterfaceFeature : kCameraFeature,
            InvalidationEnding::kAtOnce, [event, post](const Invalidation& change) {
                if (change.IsWanted()) {
                    post(event, change.handle, change.name);
                }
            });
    });
}

} // namespace pyxen
