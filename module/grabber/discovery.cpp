// discovery.cpp - cameras that appear and disappear
#include "grabber/discovery.h"

#include "grabber/camera_caches.h"
#include "grabber/camera_identity.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"

#include <cstring>
#include <string>

namespace pyxen {

Discovery::Discovery(CPyxenAPIAccess& access, CameraCaches& moduleCaches,
                     const CameraIdentity& cameraIdentity, Logger sink)
    : api(access), caches(moduleCaches), identity(cameraIdentity), log(sink) {}

bool Discovery::ConcernsHost(PxnHandle module, const char* featureName) {
    const FeatureCache* const cache = caches.FindByHandle(module);
    const char* const moduleName = cache ? cache->GetModuleName() : nullptr;
    log.Information(
        "CMivoraKVNPyxenClass::InvalidationCallback: ModuleName = %s, handle = %p, FeatureName = %s, ",
        moduleName ? moduleName : "- unknown -", module, featureName);
    // Out of memory, the event cannot be attributed.
    return NoThrow(true, [&] { return ConcernsOpenedCamera(module); });
}

bool Discovery::ConcernsOpenedCamera(PxnHandle module) {
    std::string cameraId; // both stay empty when they cannot be read
    const char* type = nullptr;
    if (api.IsValid()) {
        api.GetFeatureAsText(module, "EventCameraDiscoveryCameraID", cameraId);
        if (api.PxnFeatureEnumGet(module, "EventCameraDiscoveryType", &type) != 0) {
            type = nullptr;
        }
    }
    if (log) {
        log.Information(
            "CMivoraKVNPyxenClass::DiscoveryCameraEventCallback: Event triggered by %s...",
            cameraId.c_str());
        log.Information("CMivoraKVNPyxenClass::DiscoveryCameraEventCallback: Event type: \"%s\"...",
                        type ? type : "");
    }
    if (!type) {
        log.Error(
            "CMivoraKVNPyxenClass::DiscoveryCameraEventCallback: Could not determine the event type. For security reasons, \"SignalCamCfgChange\" is called.");
        return true;
    }
    if (cameraId.empty()) {
        log.Error(
            "CMivoraKVNPyxenClass::DiscoveryCameraEventCallback: Could not determine id of camera that triggered the event. For security reasons, \"SignalCamCfgChange\" is called.");
        return true;
    }
    const std::string openedCameraId = identity.GetOpened();
    if (cameraId != openedCameraId) {
        log.Information(
            "CMivoraKVNPyxenClass::DiscoveryCameraEventCallback: the currently opened camera %s is not affected. -> ignored.",
            openedCameraId.c_str());
        return false;
    }
    if (std::strcmp(type, "Missing") == 0) {
        log.Information(
            "CMivoraKVNPyxenClass::DiscoveryCameraEventCallback: the currently opened camera was removed. Calling \"SignalCamCfgChange\"");
        return true;
    }
    if (std::strcmp(type, "Detected") == 0) {
        log.Information(
            "CMivoraKVNPyxenClass::DiscoveryCameraEventCallback: the currently opened camera was restored. Calling \"SignalCamCfgChange\"");
        return true;
    }
    log.Information(
        "CMivoraKVNPyxenClass::DiscoveryCameraEventCallback: the currently opened camera encountered event \"%s\" -> ignored.",
        type);
    return false;
}

} // namespace pyxen
