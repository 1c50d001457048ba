// service_outcome.h - how a service ended, and why
#pragma once

#include "mivora/module_services.h"
#include "pxnc.h"

#include <string>

namespace pyxen {

/// How a service ended. `reason` is empty after success.
struct ServiceOutcome {
    MV_SERVICE_RESULT result = MV_SERVICE_OK;
    std::string reason;

    explicit operator bool() const { return result == MV_SERVICE_OK; }
};

/// What a failure of the SDK means for a service. `what` begins the reason: "Camera/Width".
/// `isOfCamera` says that an invalid handle is that of a camera which has gone.
ServiceOutcome SdkFailure(const std::string& what, PxnError code, bool isOfCamera);

/// Stores a reason, cut off at the end of a character. Null, and a record that is too small for any
/// text, get none.
void StoreReason(const char* text, MV_SERVICE_REASON* reason);

/// Calls a receiver of the host. What it throws ends here.
template <typename Receiver, typename... Arguments>
void CallReceiver(Receiver receiver, Arguments... arguments) noexcept {
    try {
        receiver(arguments...);
    } catch (...) {
    }
}

} // namespace pyxen
