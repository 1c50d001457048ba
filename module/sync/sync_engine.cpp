// sync_engine.cpp - which features are kept in agreement
#include "sync/sync_engine.h"

#include "platform/text.h"
#include "sdk/logger.h"
#include "sync/feature_cache.h"
#include "sync/feature_caches.h"
#include "sync/feature_syncher.h"

namespace pyxen {

SyncEngine::SyncEngine(CPyxenAPIAccess& access, const FeatureSyncher& rules, IFeatureCaches& caches,
                       Logger sink)
    : api(access), syncher(rules), moduleCaches(caches), log(sink) {}

int SyncEngine::SyncModuleFeatures(FeatureCache* cache, bool onlyIfDifferent) {
    const char* moduleName = cache ? cache->GetModuleName() : nullptr;
    if (!moduleName) {
        return 1;
    }
    int result = 1;
    for (const SyncFeatureEntry& entry : syncher.GetEntries()) {
        if (platform::CompareNoCase(entry.watched.ModuleName.c_str(), moduleName) == 0) {
            result &= SyncDependencies(cache, entry.watched.FeatureName.c_str(), entry.Dependencies,
                                       onlyIfDifferent);
        }
    }
    return result;
}

int SyncEngine::SyncDependentFeatures(FeatureCache* cache, const char* featureName,
                                      bool onlyIfDifferent) {
    const std::vector<FeatureRef>* dependencies =
        syncher.FindSyncEntry(cache ? cache->GetModuleName() : nullptr, featureName);
    return dependencies ? SyncDependencies(cache, featureName, *dependencies, onlyIfDifferent) : 1;
}

int SyncEngine::SyncDependencies(FeatureCache* cache, const char* featureName,
                                 const std::vector<FeatureRef>& dependencies,
                                 bool onlyIfDifferent) {
    int result = 1;
    for (const FeatureRef& dependency : dependencies) {
        // A failure never stops the others.
        result &= SyncFeature(cache, featureName,
                              moduleCaches.FindCacheByName(dependency.ModuleName.c_str()),
                              dependency.FeatureName.c_str(), onlyIfDifferent);
    }
    return result;
}

bool SyncEngine::IsBufferImpactingFeature(FeatureCache* cache, const char* featureName) {
    if (!cache) {
        return false;
    }
    const std::string path = cache->GetFeaturePath(featureName);
    for (const char* text : {"GevSCPSPacketSize", "PacketSize", "DeviceStreamChannelPacketSize",
                             "/ImageFormatControl"}) {
        if (path.find(text) != std::string::npos) {
            return true;
        }
    }
    return false;
}

} // namespace pyxen
