// discovery_events.cpp - the SDK's camera discovery events for a grabber
#include "grabber/discovery_events.h"

#include "grabber/mivora_kvn_pyxen_class.h"
#include "sdk/no_throw.h"

namespace pyxen {

namespace {

constexpr const char* kDiscoveryFeature = "EventCameraDiscovery";

} // namespace

void discovery_events::Register(CMivoraKVNPyxenClass& grabber) {
    NoThrow(false, [&grabber] {
        grabber.DiscoverySubscription() = InvalidationHub::Subscribe(
            grabber.Api(), InvalidationChannel::kGrabberDiscovery, PXN_SYSTEM_HANDLE,
            kDiscoveryFeature, InvalidationEnding::kWaits, [&grabber](const Invalidation& event) {
                grabber.InvalidationCallback(event.handle, event.name);
            });
        return true;
    });
}

void discovery_events::Release(CMivoraKVNPyxenClass& grabber) {
    grabber.DiscoverySubscription().Unsubscribe();
}

} // namespace pyxen
