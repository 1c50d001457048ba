// discovery.h - cameras that appear and disappear
#pragma once

#include "pxnc.h"
#include "sdk/logger.h"

class CPyxenAPIAccess;

namespace pyxen {

class CameraCaches;
class CameraIdentity;

/// Decides which discovery events of the SDK the host is notified of.
///
/// Called on SDK threads, at any time until the events are unregistered. Holds no lock while it
/// calls the SDK or the sink.
class Discovery {
public:
    /// All must outlive the object.
    Discovery(CPyxenAPIAccess& access, CameraCaches& moduleCaches,
              const CameraIdentity& cameraIdentity, Logger sink);

    /// Logs the event of a module and returns true if it concerns the camera that was opened last,
    /// or if it cannot be attributed to a camera.
    bool ConcernsHost(PxnHandle module, const char* featureName);

private:
    /// Throws std::bad_alloc.
    bool ConcernsOpenedCamera(PxnHandle module);

    CPyxenAPIAccess& api;
    CameraCaches& caches;
    const CameraIdentity& identity;
    const Logger log;
};

} // namespace pyxen
