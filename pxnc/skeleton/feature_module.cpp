// feature_module.cpp - a module whose features never change
#include "pxnc/skeleton/feature_module.h"

#include <utility>

namespace skeleton {

FeatureModule::FeatureModule(Features moduleFeatures, std::shared_ptr<platform::Mutex> featureMutex)
    : mutex(std::move(featureMutex)), features(std::move(moduleFeatures)) {
    for (const auto& feature : features) {
        byName.emplace(feature->Name(), feature.get());
    }
}

std::vector<PxnFeatureInfo> FeatureModule::ListFeatures() {
    std::vector<PxnFeatureInfo> infos;
    infos.reserve(features.size());
    for (const auto& feature : features) {
        infos.push_back(feature->Info());
    }
    return infos;
}

PxnError FeatureModule::With(const char* name, FunctionRef<PxnError(Feature&)> use) {
    const auto found = byName.find(name);
    if (found == byName.end()) {
        return PxnErrNotFound;
    }
    const platform::MutexLock lock(*mutex);
    return use(*found->second);
}

} // namespace skeleton
