// feature_changes.cpp - which features of the open camera have changed
#include "apps/serve/feature_changes.h"

#include "apps/common/service_client.h"

#include <new>

void FeatureChanges::Follow(ServiceClient& services, IMivoraModuleServices& moduleServices) {
    Forget();
    for (const std::string& module : services.ListModules()) {
        for (const FeatureDescription& feature : services.ListFeatures(module)) {
            std::uint64_t subscription = 0;
            if (module != "System" && feature.type != MV_FEATURE_CATEGORY) {
                moduleServices.Subscribe(module.c_str(), feature.name.c_str(), OnChange, this,
                                         &subscription, nullptr);
            }
        }
    }
}

void FeatureChanges::Forget() {
    const platform::MutexLock lock(mutex);
    changed.clear();
}

std::vector<FeatureChanges::Name> FeatureChanges::Take(std::size_t most) {
    const platform::MutexLock lock(mutex);
    std::vector<Name> taken;
    while (!changed.empty() && taken.size() < most) {
        taken.push_back(std::move(changed.extract(changed.begin()).value()));
    }
    return taken;
}

void FeatureChanges::OnChange(const char* module, const char* feature, void* context) {
    auto& changes = *static_cast<FeatureChanges*>(context);
    try {
        const platform::MutexLock lock(changes.mutex);
        changes.changed.emplace(module, feature);
    } catch (const std::bad_alloc&) {
        return; // this change is not reported; the next one may be
    }
}
