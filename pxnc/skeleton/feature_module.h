// feature_module.h - a module whose features never change
#pragma once

#include "platform/mutex.h"
#include "pxnc/skeleton/described_feature.h"
#include "pxnc/skeleton/module.h"

#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace skeleton {

/// A module of the interface. Its features never change after construction, so looking them up
/// needs no lock; using one does.
class FeatureModule : public Module {
public:
    /// The features, in the order in which they are listed.
    using Features = std::vector<std::unique_ptr<DescribedFeature>>;

    /// `featureMutex` is shared by the modules of one camera, since their features reach the same
    /// description.
    explicit FeatureModule(Features moduleFeatures, std::shared_ptr<platform::Mutex> featureMutex =
                                                        std::make_shared<platform::Mutex>());

    std::vector<PxnFeatureInfo> ListFeatures() override;
    PxnError With(const char* name, FunctionRef<PxnError(Feature&)> use) override;

private:
    const std::shared_ptr<platform::Mutex> mutex;
    const Features features;
    std::unordered_map<std::string_view, DescribedFeature*> byName;
};

} // namespace skeleton
