// user_sets.cpp - saved states of a camera's features
#include "pxnc/simulator/user_sets.h"

namespace pxsim {

void UserSets::Save(const Module& module, std::size_t index) {
    Saved& saved = sets[index];
    saved.clear();
    for (const auto& feature : module.Features()) {
        if (feature->IsStored()) {
            saved.emplace(feature.get(), feature->Snapshot());
        }
    }
}

void UserSets::Load(Module& module, std::size_t index) {
    const Saved& saved = sets[index];
    for (const auto& feature : module.Features()) {
        if (!feature->IsStored()) {
            continue;
        }
        feature->Reset();
        if (auto found = saved.find(feature.get()); found != saved.end()) {
            feature->Restore(found->second);
        }
    }
    module.InvalidateAll();
}

} // namespace pxsim
