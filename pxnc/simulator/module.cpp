#include "pxnc/simulator/module.h"

#include "pxnc/skeleton/invalidations.h"

#include <algorithm>
#include <cassert>

namespace pxsim {
namespace {

void Collect(const Module& module, const Feature& feature, std::vector<const Feature*>& affected) {
    if (std::find(affected.begin(), affected.end(), &feature) != affected.end()) {
        return;
    }
    affected.push_back(&feature);
    for (const Feature* selected : feature.SelectedFeatures()) {
        Collect(module, *selected, affected);
    }
    for (const char* name : feature.Dependents()) {
        if (const Feature* dependent = module.Find(name); dependent != nullptr) {
            Collect(module, *dependent, affected);
        }
    }
}

} // namespace

Module::Module(skeleton::TextPool& pool, skeleton::Invalidations& dispatcher,
               std::shared_ptr<platform::Mutex> valueMutex)
    : ownedMutex(std::move(valueMutex)), mutex(*ownedMutex), strings(pool), events(dispatcher) {}

std::vector<PxnFeatureInfo> Module::ListFeatures() {
    std::vector<PxnFeatureInfo> infos;
    for (const auto& feature : features) {
        if (!feature->IsHidden()) {
            infos.push_back(feature->Info());
        }
    }
    return infos;
}

PxnError Module::With(const char* name, skeleton::FunctionRef<PxnError(skeleton::Feature&)> use) {
    platform::MutexLock lock(mutex);
    Feature* const feature = FindVisible(name);
    return feature ? use(*feature) : PxnError{PxnErrNotFound};
}

bool Module::Omit(const char* name) {
    Feature* feature = Find(name);
    if (feature == nullptr) {
        return false;
    }
    feature->Hide();
    return true;
}

Feature* Module::FindVisible(const char* name) const {
    Feature* feature = Find(name);
    return feature == nullptr || feature->IsHidden() ? nullptr : feature;
}

Feature* Module::Find(const char* name) const {
    auto found = byName.find(name);
    return found == byName.end() ? nullptr : found->second;
}

template <typename T>
T& Module::Typed(const char* name) const {
    auto* typed = dynamic_cast<T*>(Find(name));
    assert(typed != nullptr);
    return *typed;
}

std::int64_t Module::IntValue(const char* name) const {
    platform::MutexLock lock(mutex);
    return Typed<IntFeature>(name).Get();
}

double Module::FloatValue(const char* name) const {
    platform::MutexLock lock(mutex);
    return Typed<FloatFeature>(name).Get();
}

const char* Module::EnumValue(const char* name) const {
    platform::MutexLock lock(mutex);
    return Typed<EnumFeature>(name).Get();
}

std::int64_t Module::EnumIntValue(const char* name) const {
    platform::MutexLock lock(mutex);
    return Typed<EnumFeature>(name).IntValue();
}

bool Module::BoolValue(const char* name) const {
    platform::MutexLock lock(mutex);
    return Typed<BoolFeature>(name).Get();
}

bool Module::EnumIs(const char* name, const char* entry) const {
    platform::MutexLock lock(mutex);
    return Typed<EnumFeature>(name).Is(entry);
}

void Module::Invalidate(const Feature& feature) {
    platform::MutexLock lock(mutex);
    if (quiet > 0 || handles.empty()) {
        return;
    }
    std::vector<const Feature*> affected;
    Collect(*this, feature, affected);
    for (const Feature* one : affected) {
        if (one->IsHidden()) {
            continue;
        }
        for (PxnHandle handle : handles) {
            events.Post(handle, one->Name());
        }
    }
}

void Module::Invalidate(const char* name) {
    if (const Feature* feature = Find(name); feature != nullptr) {
        Invalidate(*feature);
    }
}

void Module::InvalidateLocked() {
    for (const auto& feature : features) {
        if (feature->IsLockedWhileStreaming()) {
            Invalidate(*feature);
        }
    }
}

void Module::InvalidateAll() {
    platform::MutexLock lock(mutex);
    for (const auto& feature : features) {
        for (PxnHandle handle : handles) {
            events.Post(handle, feature->Name());
        }
    }
}

Module::Quiet::Quiet(Module& module) : quietened(module) {
    platform::MutexLock lock(quietened.mutex);
    ++quietened.quiet;
}

Module::Quiet::~Quiet() {
    platform::MutexLock lock(quietened.mutex);
    --quietened.quiet;
}

void Module::AddHandle(PxnHandle handle) {
    platform::MutexLock lock(mutex);
    handles.push_back(handle);
}

void Module::RemoveHandle(PxnHandle handle) {
    platform::MutexLock lock(mutex);
    std::erase(handles, handle);
}

} // namespace pxsim
