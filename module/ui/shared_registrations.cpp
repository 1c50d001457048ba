// shared_registrations.cpp - the invalidations that all feature control dialogs have asked for
#include "ui/shared_registrations.h"

#include "sdk/pyxen_api_access.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

SharedRegistrations& SharedRegistrations::Instance() {
    static SharedRegistrations registrations;
    return registrations;
}

void SharedRegistrations::Register(CPyxenAPIAccess& api, PxnHandle handle, const std::string& name,
                                   PxnInvalidationCallback callback, void* context) {
    const platform::MutexLock lock(mutex);
    const Subject subject{api.GetLibraryHandle(), handle, name, callback};
    std::vector<void*>& registered = contexts[subject];
    registered.push_back(context);
    if (api.PxnFeatureInvalidationRegister(handle, name.c_str(), callback, context)) {
        registered.pop_back();
        if (registered.empty()) {
            contexts.erase(subject);
        }
    }
}

void SharedRegistrations::Unregister(CPyxenAPIAccess& api, PxnHandle handle,
                                     const std::string& name, PxnInvalidationCallback callback,
                                     void* context) {
    const platform::MutexLock lock(mutex);
    const auto subject = contexts.find({api.GetLibraryHandle(), handle, name, callback});
    if (subject == contexts.end()) {
        return;
    }
    std::vector<void*>& registered = subject->second;
    const auto newest = std::find(registered.rbegin(), registered.rend(), context);
    if (newest == registered.rend()) {
        return;
    }
    const auto own = std::next(newest).base();
    const std::vector<void*> newer(std::next(own), registered.end());
    registered.erase(own);
    for (std::size_t count = 0; count <= newer.size(); ++count) {
        api.PxnFeatureInvalidationUnregister(handle, name.c_str(), callback);
    }
    for (void* const kept : newer) {
        api.PxnFeatureInvalidationRegister(handle, name.c_str(), callback, kept);
    }
    if (registered.empty()) {
        contexts.erase(subject);
    }
}
