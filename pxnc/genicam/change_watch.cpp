// change_watch.cpp - searches for the features that a write has changed
#include "pxnc/genicam/change_watch.h"

#include "pxnc/skeleton/number_text.h"
#include "pxnc/skeleton/stored_value.h"

#include <algorithm>
#include <cstdint>

namespace genicam {
namespace {

std::string LimitsOf(skeleton::Feature& feature) {
    std::string text;
    std::int64_t integers[3] = {};
    double reals[2] = {};
    std::vector<const char*> entries;
    switch (feature.DataType()) {
    case PxnFeatureDataInt:
        feature.GetIntRange(integers[0], integers[1]);
        feature.GetIntIncrement(integers[2]);
        for (const std::int64_t number : integers) {
            text += "|" + std::to_string(number);
        }
        break;
    case PxnFeatureDataFloat:
        feature.GetFloatRange(reals[0], reals[1]);
        for (const double number : reals) {
            text += "|" + skeleton::FormatFloat(number);
        }
        break;
    case PxnFeatureDataEnum:
        feature.GetEnumEntries(entries);
        text += "|";
        for (const char* entry : entries) {
            bool isAvailable = false;
            feature.IsEnumEntryAvailable(entry, isAvailable);
            text += isAvailable ? '1' : '0';
        }
        break;
    default:
        break;
    }
    return text;
}

/// Access, value and limits in one text: it differs when one of them has changed.
std::string SnapshotOf(skeleton::Module& module, const char* name) {
    std::string snapshot;
    module.With(name, [&snapshot](skeleton::Feature& feature) -> PxnError {
        bool readable = false;
        bool writable = false;
        feature.GetAccess(readable, writable);
        snapshot = {readable ? 'r' : '-', writable ? 'w' : '-'};
        std::string value;
        // Raw contents are too long to be compared at every write.
        if (readable && feature.DataType() != PxnFeatureDataRaw &&
            skeleton::ReadAsText(feature, value) == PxnErrSuccess) {
            snapshot += value;
        }
        snapshot += LimitsOf(feature);
        return PxnErrSuccess;
    });
    return snapshot;
}

void AddOnce(std::vector<const char*>& names, const char* name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
        names.push_back(name);
    }
}

} // namespace

void ChangeWatch::OnWatched(PxnHandle handle, skeleton::Module& module, const char* name) {
    const Subject subject{handle, backend.Texts().Intern(name)};
    std::string snapshot = SnapshotOf(module, name);
    const platform::MutexLock lock(mutex);
    // Listed after the snapshot, so that no registration made meanwhile is missed.
    const auto registrations = backend.Changes().List();
    const bool isRegistered =
        std::any_of(registrations.begin(), registrations.end(), [&](const auto& candidate) {
            return candidate.handle == handle && candidate.name == subject.second;
        });
    // An earlier registration's baseline stays: a change may be on its way to it.
    if (!isRegistered) {
        baselines.insert_or_assign(subject, std::move(snapshot));
    }
}

void ChangeWatch::Search(PxnHandle handle, const char* written) {
    const char* const name = written ? backend.Texts().Intern(written) : nullptr;
    bool isModuleWatched = false;
    bool isWrittenWatched = false; // a registration that follows is not called for this write
    for (const auto& registration : backend.Changes().List()) {
        isModuleWatched |= registration.handle == handle;
        isWrittenWatched |= registration.handle == handle && registration.name == name;
    }
    if (!isModuleWatched) {
        return;
    }
    const platform::MutexLock lock(mutex);
    // Writes in quick succession share one comparison.
    const auto [names, isFirst] = posted.try_emplace(handle);
    if (isWrittenWatched) {
        AddOnce(names->second, name);
    }
    if (isFirst) {
        backend.Changes().PostWork(handle, [this, handle] { return Compare(handle); });
    }
}

void ChangeWatch::Forget(PxnHandle handle) {
    const platform::MutexLock lock(mutex);
    std::erase_if(baselines, [&](const auto& baseline) { return baseline.first.first == handle; });
}

std::vector<const char*> ChangeWatch::Compare(PxnHandle handle) {
    std::vector<const char*> changed;
    {
        const platform::MutexLock lock(mutex);
        const auto names = posted.find(handle);
        changed = std::move(names->second);
        posted.erase(names);
    }
    std::vector<const char*> watched;
    for (const auto& registration : backend.Changes().List()) {
        if (registration.handle == handle) {
            AddOnce(watched, registration.name);
        }
    }
    // Released before the callbacks run, one of which may close the camera.
    skeleton::Target target;
    if (!backend.Handles().Find(handle, target)) {
        return {};
    }
    for (const char* name : watched) {
        if (target.HasVanished()) {
            break;
        }
        std::string snapshot = SnapshotOf(*target.module, name);
        const platform::MutexLock lock(mutex);
        const auto baseline = baselines.find({handle, name});
        if (baseline != baselines.end() && baseline->second != snapshot) {
            baseline->second = std::move(snapshot);
            AddOnce(changed, name);
        }
    }
    return changed;
}

} // namespace genicam
