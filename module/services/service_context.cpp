// service_context.cpp - what all services of one grabber share
#include "services/service_context.h"

#include "platform/text.h"
#include "sync/feature_caches.h"

#include <new>

namespace pyxen {

namespace {

constexpr const char* kSystemModule = "System";

struct CameraModule {
    const char* name;
    bool isOfCamera;
};

constexpr CameraModule kCameraModules[] = {{"Camera", true},
                                           {"Interface", false},
                                           {"Transportlayer", false},
                                           {"Localdevice", true},
                                           {"Stream0", true}};

bool IsSameName(const char* left, const char* right) {
    return platform::CompareNoCase(left, right) == 0;
}

template <typename Ask>
PxnError WithMemory(Ask ask) {
    FeatureStep failed = FeatureStep::kContent;
    const PxnError error = ask(&failed);
    if (error != PxnErrSuccess && failed == FeatureStep::kMemory) {
        throw std::bad_alloc();
    }
    return error;
}

} // namespace

PxnError RangeOf(const Feature& feature, FeatureRange& range) {
    return WithMemory([&](FeatureStep* failed) { return feature.Range(range, failed); });
}

PxnError SelectedBy(const Feature& feature, std::vector<const char*>& names) {
    return WithMemory([&](FeatureStep* failed) { return feature.Selected(names, failed); });
}

std::vector<ServiceModule> ServiceContext::Modules() const {
    std::vector<ServiceModule> modules;
    FeatureCache& system = grabber.SystemCache();
    if (system.GetModuleName()) {
        modules.push_back({kSystemModule, &system, false});
    }
    for (const CameraModule& candidate : kCameraModules) {
        FeatureCache* const cache = grabber.HasOpenCamera()
                                        ? grabber.CameraModules().FindCacheByName(candidate.name)
                                        : nullptr;
        if (cache) {
            modules.push_back({candidate.name, cache, candidate.isOfCamera});
        }
    }
    return modules;
}

ServiceOutcome ServiceContext::FindModule(const char* name, ServiceModule& module) const {
    std::string known;
    for (ServiceModule& candidate : Modules()) {
        const bool isWanted = IsSameName(candidate.name.c_str(), name) ||
                              IsSameName(candidate.cache->GetModuleName(), name);
        if (isWanted) {
            module = std::move(candidate);
            return {};
        }
        known += (known.empty() ? "" : ", ") + candidate.name;
    }
    for (const CameraModule& candidate : kCameraModules) {
        if (!grabber.HasOpenCamera() && IsSameName(candidate.name, name)) {
            return {MV_SERVICE_NO_CAMERA, "no camera is open"};
        }
    }
    return {MV_SERVICE_NOT_FOUND,
            "there is no module \"" + std::string(name) + "\"; there are " + known};
}

ServiceOutcome ServiceContext::FindFeature(const char* module, const char* name,
                                           ServiceFeature& feature) const {
    ServiceOutcome outcome = FindModule(module, feature.module);
    if (!outcome) {
        return outcome;
    }
    feature.info = feature.module.cache->Find(name);
    if (!feature.info) {
        return {MV_SERVICE_NOT_FOUND,
                feature.module.name + " has no feature \"" + std::string(name) + "\""};
    }
    return {};
}

} // namespace pyxen
