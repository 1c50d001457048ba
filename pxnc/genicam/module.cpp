// module.cpp - something with a handle and features
#include "pxnc/genicam/module.h"

#include <utility>

namespace genicam {

Module::Module(Features moduleFeatures, std::shared_ptr<platform::Mutex> featureMutex)
    : mutex(std::move(featureMutex)), features(std::move(moduleFeatures)) {
    for (const auto& feature : features) {
        byName.emplace(feature->Name(), feature.get());
    }
}

std::vector<PxnFeatureInfo> Module::ListFeatures() {
    std::vector<PxnFeatureInfo> infos;
    infos.reserve(features.size());
    for (const auto& feature : features) {
        infos.push_back(feature->Info());
    }
    return infos;
}

PxnError Module::With(const char* name, skeleton::FunctionRef<PxnError(skeleton::Feature&)> use) {
    const auto found = byName.find(name);
    if (found == byName.end()) {
        return PxnErrNotFound;
    }
    const platform::MutexLock lock(*mutex);
    return use(*found->second);
}

} // namespace genicam
