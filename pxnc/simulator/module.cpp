// module.cpp - a module of the SDK: a set of features behind handles
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
    for (const std::string& name : feature.Dependents()) {
        if (const Feature* dependent = module.Find(name.c_str())) {
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

void Module::AddTable(const char* category, std::span<const FeatureRow> rows) {
    for (const FeatureRow& row : rows) {
        std::visit(
            [&](const auto& type) {
                using Class = typename std::decay_t<decltype(type)>::Class;
                features.push_back(std::make_unique<Class>(*this, category, row, type));
            },
            row.type);
        byName.emplace(features.back()->Name(), features.back().get());
    }
}

bool Module::Omit(const char* name) {
    Feature* feature = Find(name);
    if (!feature) {
        return false;
    }
    feature->Hide();
    return true;
}

Feature* Module::FindVisible(const char* name) const {
    Feature* feature = Find(name);
    return feature && !feature->IsHidden() ? feature : nullptr;
}

Feature* Module::Find(const char* name) const {
    auto found = byName.find(name);
    return found == byName.end() ? nullptr : found->second;
}

Feature& Module::At(const char* name) const {
    Feature* const feature = Find(name);
    assert(feature);
    return *feature;
}

std::int64_t Module::IntValue(const char* name) const {
    platform::MutexLock lock(mutex);
    return Get<Int>(name).Get();
}

double Module::FloatValue(const char* name) const {
    platform::MutexLock lock(mutex);
    return Get<Float>(name).Get();
}

const char* Module::EnumValue(const char* name) const {
    platform::MutexLock lock(mutex);
    return Get<Enum>(name).EntryName();
}

std::int64_t Module::EnumIntValue(const char* name) const {
    platform::MutexLock lock(mutex);
    return Get<Enum>(name).IntValue();
}

bool Module::BoolValue(const char* name) const {
    platform::MutexLock lock(mutex);
    return Get<Bool>(name).Get();
}

bool Module::EnumIs(const char* name, const char* entry) const {
    platform::MutexLock lock(mutex);
    return Get<Enum>(name).Is(entry);
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
    if (const Feature* feature = Find(name)) {
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
