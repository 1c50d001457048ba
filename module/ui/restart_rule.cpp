// restart_rule.cpp - which changes invalidate the frame buffers
#include "ui/restart_rule.h"

#include "sdk/logger.h"
#include "sync/feature_cache.h"

#include <string_view>

namespace pyxen {

namespace {

bool Contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

bool IsPacketSize(std::string_view name) {
    return Contains(name, "GevSCPSPacketSize") || Contains(name, "PacketSize") ||
           Contains(name, "DeviceStreamChannelPacketSize");
}

bool IsImageFormat(std::string_view category) {
    return Contains(category, "/ImageFormatControl") || Contains(category, "/ImageFormat");
}

} // namespace

bool DoesFeatureTriggerRestart(const PxnFeatureInfo& feature) {
    return (feature.name && IsPacketSize(feature.name)) ||
           (feature.category && IsImageFormat(feature.category));
}

bool DoesPathTriggerRestart(const FeatureCache& cache, const char* path, Logger log) {
    const std::string_view text = path;
    if (text.starts_with('/')) {
        return IsImageFormat(text) || text == "/";
    }
    if (IsPacketSize(text)) {
        return true;
    }
    if (const PxnFeatureInfo* const feature = cache.Find(path)) {
        return DoesFeatureTriggerRestart(*feature);
    }
    log.Error(
        "CKVNPyxenFeatureCtrlDialog::DoesPathTriggerRestart: Feature %s is not in the feature cache",
        path);
    return false;
}

} // namespace pyxen
