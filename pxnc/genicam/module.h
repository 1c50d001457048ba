// module.h - something with a handle and features
#pragma once

#include "platform/mutex.h"
#include "pxnc/genicam/feature.h"
#include "pxnc/skeleton/module.h"

#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace genicam {

/// A module of the interface. Its features never change after construction, so looking them up
/// needs no lock; using one does.
class Module : public skeleton::Module {
public:
    using Features = std::vector<std::unique_ptr<Feature>>;

    /// `featureMutex` is shared by the modules of one camera, since their features reach the same
    /// description.
    explicit Module(Features moduleFeatures, std::shared_ptr<platform::Mutex> featureMutex =
                                                 std::make_shared<platform::Mutex>());

    std::vector<PxnFeatureInfo> ListFeatures() override;
    PxnError With(const char* name,
                  skeleton::FunctionRef<PxnError(skeleton::Feature&)> use) override;

private:
    const std::shared_ptr<platform::Mutex> mutex;
    const Features features;
    std::unordered_map<std::string_view, Feature*> byName;
};

} // namespace genicam
