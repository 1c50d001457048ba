// settings_saver.cpp - collecting the settings of the open camera
#include "services/settings_saver.h"

#include "services/json.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <utility>

namespace pyxen {

namespace {

std::string TextOrNothing(const char* text) {
    return text && IsUtf8(text) ? text : "";
}

bool IsOfConnection(const PxnFeatureInfo& info) {
    return info.category && std::string_view(info.category).starts_with("/TransportLayerControl");
}

bool IsSetting(const PxnFeatureInfo& info, bool isAnyMarked) {
    constexpr std::uint32_t kBoth = PxnFeatureFlagRead | PxnFeatureFlagWrite;
    return (info.isStreamable || (!isAnyMarked && !IsOfConnection(info))) &&
           (info.featureFlags & kBoth) == kBoth &&
           HasValue(static_cast<FeatureType>(info.featureDataType));
}

bool HasTextsOfAFile(const StoredSetting& setting) {
    return IsUtf8(setting.feature) &&
           std::all_of(setting.selectors.begin(), setting.selectors.end(),
                       [](const SelectorPosition& selector) {
                           return IsUtf8(selector.feature) && selector.value.CanBeWritten();
                       });
}

/// Whether the module says which of its features are settings. Descriptions of some cameras mark
/// none; of these all count that can be written, but for those of the connection.
bool IsAnyMarked(const ServiceModule& module) {
    const PxnFeatureInfo* const list = module.cache->GetFeatureList();
    return module.name != "Camera" ||
           std::any_of(list, list + module.cache->GetFeatureCount(),
                       [](const PxnFeatureInfo& info) { return info.isStreamable != 0; });
}

} // namespace

void SettingsSaver::Collect() {
    for (const ServiceModule& module : context.Modules()) {
        if (module.cache == &context.Grabber().SystemCache()) {
            continue;
        }
        if (module.name == "Camera") {
            DescribeCamera(module);
        }
        CollectModule(module);
    }
}

void SettingsSaver::DescribeCamera(const ServiceModule& camera) {
    PxnCameraInfo info{};
    if (context.Grabber().Api().PxnCameraInfoQueryByHandle(camera.cache->GetHandle(), &info,
                                                           sizeof info) == PxnErrSuccess) {
        file.camera.model = TextOrNothing(info.modelName);
        file.camera.serial = TextOrNothing(info.serialString);
        file.camera.id = TextOrNothing(info.cameraIdExtended);
    }
    const PxnFeatureInfo* const vendor = camera.cache->Find("DeviceVendorName");
    if (!vendor) {
        return;
    }
    FeatureValue name;
    const ServiceOutcome read = ServiceFeature{camera, vendor}.Read(name);
    if (read.result == MV_SERVICE_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    if (read && name.GetIf<std::string>()) {
        file.camera.vendor = TextOrNothing(name.Get<std::string>().c_str());
    }
}

void SettingsSaver::CollectModule(const ServiceModule& module) {
    const SelectorMap selectors(module);
    const FeatureCache& cache = *module.cache;
    const bool isAnyMarked = IsAnyMarked(module);
    for (std::uint32_t index = 0; index < cache.GetFeatureCount() && !hasCameraGone; ++index) {
        const ServiceFeature feature{module, cache.GetFeatureList() + index};
        // Only the first of two of one name can be asked for.
        if (!IsSetting(*feature.info, isAnyMarked) ||
            cache.Find(feature.info->name) != feature.info) {
            continue;
        }
        current = {};
        current.module = module.name;
        current.feature = feature.info->name;
        positions = 0;
        Walk(feature, selectors.Of(current.feature), 0);
    }
}

void SettingsSaver::Walk(const ServiceFeature& feature,
                         const std::vector<const PxnFeatureInfo*>& chain, std::size_t level) {
    if (level < chain.size()) {
        WalkThroughSelector(feature, chain, level);
    } else if (++positions <= kMostPositions) {
        SaveOne(feature);
    } else if (positions == kMostPositions + 1) {
        Report({MV_SERVICE_NOT_SUPPORTED, feature.Path() + ": its selectors have more than " +
                                              std::to_string(kMostPositions) + " positions"});
    }
}

void SettingsSaver::WalkThroughSelector(const ServiceFeature& feature,
                                        const std::vector<const PxnFeatureInfo*>& chain,
                                        std::size_t level) {
    const ServiceFeature selector{feature.module, chain[level]};
    SelectorScope scope(selector, failures);
    if (!scope.Readable()) {
        // What cannot be used at present has no position either.
        bool isReadable = false;
        bool isWritable = false;
        feature.Get().Access(isReadable, isWritable);
        if (isReadable && isWritable) {
            Report(scope.Readable());
        }
        return;
    }
    std::vector<StoredValue> all;
    if (!scope.List(kMostPositions, all)) {
        Report({MV_SERVICE_NOT_SUPPORTED, selector.Path() + ": has more than " +
                                              std::to_string(kMostPositions) + " positions"});
        return;
    }
    for (const StoredValue& position : all) {
        if (hasCameraGone || positions > kMostPositions) {
            return;
        }
        current.selectors.push_back({chain[level]->name, position});
        if (const ServiceOutcome moved = scope.Move(position); moved) {
            Walk(feature, chain, level + 1);
        } else {
            Report(moved);
        }
        current.selectors.pop_back();
    }
}

void SettingsSaver::SaveOne(const ServiceFeature& feature) {
    const Feature& one = feature.Get();
    bool isReadable = false;
    bool isWritable = false;
    if (const PxnError error = one.Access(isReadable, isWritable)) {
        return Report(feature.Failure(error));
    }
    if (!isReadable || !isWritable) {
        return;
    }
    FeatureValue value;
    if (const ServiceOutcome read = feature.Read(value); !read) {
        return Report(read);
    }
    current.value = StoredValue::Of(value);
    if (!HasTextsOfAFile(current)) {
        return Report({MV_SERVICE_NOT_SUPPORTED,
                       feature.Path() + ": its name or a selector is no text of a file"});
    }
    if (!current.value.CanBeWritten()) {
        return Report({MV_SERVICE_NOT_SUPPORTED,
                       feature.Path() + ": its value is no text and no number of a file"});
    }
    file.settings.push_back(current);
    Report({});
}

void SettingsSaver::Report(const ServiceOutcome& outcome) {
    SettingReport report(current);
    report.outcome = outcome;
    if (outcome) {
        report.present = report.value;
    } else {
        report.value.clear();
    }
    reports.push_back(std::move(report));
    hasCameraGone = hasCameraGone || outcome.result == MV_SERVICE_NO_CAMERA;
}

} // namespace pyxen
