// discovery.cpp - cameras that appear and disappear
#include "grabber/mivora_kvn_pyxen_class.h"
#include "sdk/logger.h"
#include "sdk/no_throw.h"

#include <cstring>
#include <string>

void CMivoraKVNPyxenClass::InvalidationCallback(PxnHandle handle, const char* featureName) {
    const FeatureCache* cache = GetFeatureCacheByHandle(handle);
    const char* moduleName = cache ? cache->GetModuleName() : nullptr;
    Logger(GetLogSink())
        .Information(
            "CMivoraKVNPyxenClass::InvalidationCallback: ModuleName = %s, handle = %p, FeatureName = %s, ",
            moduleName ? moduleName : "- unknown -", handle, featureName);
    // An event that cannot be attributed, also because of a lack of memory, is reported to the
    // host.
    if (NoThrow(true, [&] { return ConcernsOpenCamera(handle); })) {
        SignalCamCfgChange();
    }
}

bool CMivoraKVNPyxenClass::ConcernsOpenCamera(PxnHandle eventModule) {
    const Logger log(GetLogSink());
    std::string cameraId; // both stay empty when they cannot be read
    const char* type = nullptr;
    if (api.IsValid()) {
        api.GetFeatureAsText(eventModule, "EventCameraDiscoveryCameraID", cameraId);
        if (api.PxnFeatureEnumGet(eventModule, "EventCameraDiscoveryType", &type) != 0) {
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
