// stored_values.cpp - what a settings file keeps of a module, for every state of its selectors
#include "pxnc/simulator/module.h"

#include <algorithm>
#include <any>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace pxsim {
namespace {

using skeleton::StoredValue;
using Snapshot = std::map<Feature*, std::any>;

Snapshot Remember(const Module& module) {
    Snapshot snapshot;
    for (const auto& feature : module.Features()) {
        if (feature->DataType() != PxnFeatureDataCommand) {
            snapshot.emplace(feature.get(), feature->Snapshot());
        }
    }
    return snapshot;
}

void Return(const Snapshot& snapshot) {
    for (const auto& [feature, value] : snapshot) {
        feature->Restore(value);
    }
}

/// Sets the selectors of a feature to each of their states in turn and calls `visit` in each.
template <typename Visit>
void ForEachState(const std::vector<Feature*>& selectors, std::size_t depth, Visit visit) {
    if (depth == selectors.size()) {
        return visit();
    }
    for (const std::string& state : selectors[depth]->States()) {
        if (selectors[depth]->PutText(state)) {
            ForEachState(selectors, depth + 1, visit);
        }
    }
}

std::vector<StoredValue> Collect(Module& module) {
    std::vector<StoredValue> values;
    for (const auto& feature : module.Features()) {
        if (!feature->IsStored() || feature->IsHidden()) {
            continue;
        }
        ForEachState(feature->Selectors(), 0, [&] {
            StoredValue stored{feature->Name()};
            if (ReadAsText(*feature, stored.value) != PxnErrSuccess) {
                return;
            }
            for (Feature* selector : feature->Selectors()) {
                std::string state;
                ReadAsText(*selector, state);
                stored.selectors.emplace_back(selector->Name(), state);
            }
            values.push_back(std::move(stored));
        });
    }
    return values;
}

PxnError Apply(Module& module, const StoredValue& stored) {
    Feature* feature = module.FindVisible(stored.feature.c_str());
    if (!feature) {
        return PxnErrNotFound;
    }
    for (const auto& [name, state] : stored.selectors) {
        Feature* selector = module.Find(name.c_str());
        if (!selector || !selector->PutText(state)) {
            return PxnErrInvalidValue;
        }
    }
    std::string present;
    if (ReadAsText(*feature, present) == PxnErrSuccess && present == stored.value) {
        return PxnErrSuccess; // also where it cannot be written at present
    }
    return WriteAsText(*feature, stored.value);
}

// Selectors come last, so that they end in the state of the file; inner ones before outer ones.
void Order(const Module& module, std::vector<StoredValue>& values) {
    const auto rank = [&module](const StoredValue& value) {
        const Feature* feature = module.FindVisible(value.feature.c_str());
        const bool selects = feature && feature->Info().hasSelectedFeatures != 0;
        constexpr std::size_t kDeepest = 8;
        return selects ? kDeepest - value.selectors.size() : 0;
    };
    std::stable_sort(values.begin(), values.end(),
                     [&](const StoredValue& left, const StoredValue& right) {
                         return rank(left) < rank(right);
                     });
}

PxnError ApplyAll(Module& module, std::vector<StoredValue> values) {
    Order(module, values);
    for (std::size_t before = values.size() + 1; values.size() < before;) {
        before = values.size();
        std::vector<StoredValue> refused;
        for (StoredValue& value : values) {
            if (Apply(module, value) != PxnErrSuccess) {
                refused.push_back(std::move(value));
            }
        }
        values = std::move(refused);
    }
    // A feature that only other settings lock was valid together with them when saved.
    for (const StoredValue& value : values) {
        if (Apply(module, value) != PxnErrInvalidAccess ||
            !module.FindVisible(value.feature.c_str())->PutText(value.value)) {
            return PxnErrInvalidValue;
        }
    }
    return PxnErrSuccess;
}

} // namespace

std::vector<StoredValue> Module::GetStoredValues() {
    platform::MutexLock lock(mutex);
    const Quiet silence(*this); // hosts must not see the selectors change
    const Snapshot before = Remember(*this);
    std::vector<StoredValue> values = Collect(*this);
    Return(before);
    return values;
}

PxnError Module::ApplyStoredValues(std::vector<StoredValue> values) {
    platform::MutexLock lock(mutex);
    if (IsStreaming()) {
        return PxnErrInvalidAccess;
    }
    const Snapshot before = Remember(*this);
    PxnError result = PxnErrSuccess;
    {
        const Quiet silence(*this);
        result = ApplyAll(*this, std::move(values));
        if (result != PxnErrSuccess) {
            Return(before);
        }
    }
    InvalidateAll();
    return result;
}

} // namespace pxsim
