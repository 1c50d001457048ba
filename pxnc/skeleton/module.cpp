// module.cpp - stored values of a module without selectors of its own
#include "pxnc/skeleton/module.h"

#include <algorithm>
#include <utility>

namespace skeleton {
namespace {

constexpr std::uint32_t kReadAndWrite = PxnFeatureFlagRead | PxnFeatureFlagWrite;

bool CanBeStored(const PxnFeatureInfo& info, bool onlyStreamable) {
    return (info.featureFlags & kReadAndWrite) == kReadAndWrite &&
           info.featureDataType != PxnFeatureDataCommand &&
           (info.isStreamable != 0 || !onlyStreamable);
}

/// The values before a change, to be written back when the change fails.
class FormerValues {
public:
    explicit FormerValues(Module& changedModule) : module(changedModule) {}

    void Remember(const std::string& name) {
        StoredValue former{name};
        const PxnError result = module.With(
            name.c_str(), [&](Feature& feature) { return ReadAsText(feature, former.value); });
        if (result == PxnErrSuccess) {
            values.push_back(std::move(former));
        }
    }
    void WriteBack() {
        for (auto former = values.rbegin(); former != values.rend(); ++former) {
            module.With(former->feature.c_str(),
                        [&](Feature& feature) { return WriteAsText(feature, former->value); });
        }
    }

private:
    Module& module;
    std::vector<StoredValue> values;
};

} // namespace

std::vector<StoredValue> Module::GetStoredValues() {
    const std::vector<PxnFeatureInfo> infos = ListFeatures();
    const bool onlyStreamable =
        std::any_of(infos.begin(), infos.end(),
                    [](const PxnFeatureInfo& info) { return info.isStreamable != 0; });
    std::vector<StoredValue> values;
    for (const PxnFeatureInfo& info : infos) {
        StoredValue stored{info.name};
        const PxnError result = With(info.name, [&](Feature& feature) -> PxnError {
            bool readable = false;
            bool writable = false;
            feature.GetAccess(readable, writable);
            return CanBeStored(info, onlyStreamable) && readable && writable
                       ? ReadAsText(feature, stored.value)
                       : PxnErrInvalidAccess;
        });
        if (result == PxnErrSuccess) {
            values.push_back(std::move(stored));
        }
    }
    return values;
}

PxnError Module::ApplyStoredValues(std::vector<StoredValue> values) {
    FormerValues former(*this);
    // What another value still forbids is tried again after the rest.
    for (std::size_t before = values.size() + 1; values.size() < before;) {
        before = values.size();
        std::vector<StoredValue> refused;
        for (StoredValue& stored : values) {
            former.Remember(stored.feature);
            const PxnError result = With(stored.feature.c_str(), [&](Feature& feature) {
                return WriteAsText(feature, stored.value);
            });
            if (result != PxnErrSuccess) {
                refused.push_back(std::move(stored));
            } else {
                OnWritten(stored.feature.c_str());
            }
        }
        values = std::move(refused);
    }
    if (values.empty()) {
        return PxnErrSuccess;
    }
    former.WriteBack();
    return PxnErrInvalidValue;
}

} // namespace skeleton
