// camera_caches.cpp - the feature caches of the open camera's modules
#include "grabber/camera_caches.h"

#include "platform/text.h"

#include <algorithm>

namespace pyxen {

FeatureCache* CameraCaches::Get(std::uint32_t index) {
    return index < caches.size() ? &caches[index] : nullptr;
}

FeatureCache* CameraCaches::FindCacheByName(const char* name) {
    const auto found =
        std::find_if(caches.begin(), caches.end(), [name](const FeatureCache& cache) {
            const char* const moduleName = cache.GetModuleName();
            return name && moduleName && platform::CompareNoCase(moduleName, name) == 0;
        });
    return found == caches.end() ? nullptr : &*found;
}

FeatureCache* CameraCaches::FindByHandle(PxnHandle handle) {
    const auto found =
        std::find_if(caches.begin(), caches.end(),
                     [handle](const FeatureCache& cache) { return cache.GetHandle() == handle; });
    return found == caches.end() ? nullptr : &*found;
}

void CameraCaches::Clear() {
    for (FeatureCache& cache : caches) {
        cache.Clear();
    }
}

} // namespace pyxen
