// device_discovery.h - how a device finder hears of cameras and interfaces
#pragma once

#include "pxnc.h"
#include "sdk/invalidation_hub.h"

#include <functional>

class CPyxenAPIAccess;

namespace pyxen {

/// A device finder's registrations for the SDK's discovery events. User-interface thread only.
class DeviceDiscovery {
public:
    enum class Event { kInterface, kCamera };

    /// Posts an event to the finder's window without waiting; called on the SDK's threads.
    using Post = std::function<void(Event event, PxnHandle handle, const char* feature)>;

    /// `access` outlives the object.
    explicit DeviceDiscovery(CPyxenAPIAccess& access) : api(access) {}

    /// From now on events are posted; those that the SDK refuses to report are not.
    void Register(const Post& post);
    /// Does nothing for what is not registered. An event that the SDK is just reporting is dropped.
    void Unregister();

private:
    InvalidationSubscription Subscribe(Event event, const Post& post);

    CPyxenAPIAccess& api;
    InvalidationSubscription interfaces;
    InvalidationSubscription cameras;
};

} // namespace pyxen
