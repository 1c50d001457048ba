// settings_loader.cpp - giving settings to the open camera
#include "services/settings_loader.h"

#include "services/settings_saver.h"

#include <algorithm>
#include <optional>

namespace pyxen {

namespace {

// Dependencies that are deeper than that are a circle.
constexpr unsigned kMostPasses = 32;
constexpr unsigned kMostRounds = 4;

bool IsPosition(const std::vector<StoredValue>& positions, const StoredValue& value) {
    return std::find(positions.begin(), positions.end(), value) != positions.end();
}

} // namespace

SettingsLoader::SettingsLoader(ServiceContext& shared, FeatureService& featureService,
                               const std::vector<StoredSetting>& settings, bool dryRun, Logger sink)
    : context(shared), features(featureService), isDry(dryRun), log(sink) {
    items.reserve(settings.size());
    for (const StoredSetting& setting : settings) {
        items.emplace_back(setting);
    }
}

void SettingsLoader::Apply() {
    for (Item& item : items) {
        item.report.outcome = Find(item);
        item.state = item.report.outcome ? State::kPending : State::kHopeless;
    }
    for (unsigned round = 0; round < kMostRounds; ++round) {
        TryPending();
        if (isDry || hasCameraGone || !FindChanged()) {
            break;
        }
    }
}

std::vector<SettingReport> SettingsLoader::Reports() const {
    std::vector<SettingReport> reports;
    reports.reserve(items.size());
    for (const Item& item : items) {
        reports.push_back(item.report);
        if (hasCameraGone && item.state == State::kPending && item.report.outcome) {
            reports.back().outcome = {MV_SERVICE_NO_CAMERA,
                                      item.feature.Path() + ": the camera has gone"};
        }
    }
    return reports;
}

ServiceOutcome SettingsLoader::Find(Item& item) {
    const StoredSetting& setting = item.setting;
    ServiceOutcome found =
        context.FindFeature(setting.module.c_str(), setting.feature.c_str(), item.feature);
    if (!found) {
        return found;
    }
    if (item.feature.module.cache == &context.Grabber().SystemCache()) {
        return {MV_SERVICE_NOT_FOUND, item.feature.Path() + ": is no setting of a camera"};
    }
    if (item.feature.Get().Type() != setting.value.type) {
        return {MV_SERVICE_WRONG_TYPE, item.feature.Path() + ": is of another type"};
    }
    std::size_t known = 0;
    for (const PxnFeatureInfo* const info : SelectorsOf(item.feature.module).Of(setting.feature)) {
        for (const SelectorPosition& position : setting.selectors) {
            if (position.feature == info->name) {
                item.selectors.push_back({{item.feature.module, info}, position.value});
                ++known;
            }
        }
    }
    if (known != setting.selectors.size()) {
        return {MV_SERVICE_NOT_FOUND,
                item.feature.Path() + ": is not selected by " + item.report.selector};
    }
    return {};
}

const SelectorMap& SettingsLoader::SelectorsOf(const ServiceModule& module) {
    return selectorMaps.try_emplace(module.cache, module).first->second;
}

void SettingsLoader::TryPending() {
    bool isAnyTaken = true;
    for (unsigned pass = 0; pass < kMostPasses && isAnyTaken; ++pass) {
        isAnyTaken = false;
        for (Item& item : items) {
            if (item.state == State::kPending && !hasCameraGone) {
                Try(item);
                isAnyTaken = isAnyTaken || item.state == State::kTaken;
            }
        }
    }
}

void SettingsLoader::Try(Item& item) {
    ServiceOutcome& outcome = item.report.outcome;
    bool isThere = true;
    if (isDry) {
        outcome = CheckPosition(item, isThere);
        outcome = outcome && isThere ? TryAtPosition(item) : outcome;
    } else {
        outcome = AtPosition(item, 0, [&] { return TryAtPosition(item); });
    }
    hasCameraGone = outcome.result == MV_SERVICE_NO_CAMERA;
    // What did not follow does not follow when the same is written again.
    if (outcome || outcome.result == MV_SERVICE_NOT_SYNCHRONISED) {
        item.state = State::kTaken;
    }
}

ServiceOutcome SettingsLoader::TryAtPosition(Item& item) {
    FeatureValue value;
    if (item.feature.Get().Read(value) == PxnErrSuccess) {
        item.taken = StoredValue::Of(value);
        if (!item.isPresentKnown) {
            item.isPresentKnown = true;
            item.report.present = item.taken.Shown();
        }
        if (item.taken == item.setting.value) {
            return {};
        }
    }
    return Write(item);
}

ServiceOutcome SettingsLoader::Write(Item& item) {
    FeatureValue value = item.setting.value.Get();
    if (isDry) {
        return features.CheckValue(item.feature, value, log);
    }
    bool isKnown = false;
    ServiceOutcome outcome = features.WriteValue(item.feature, value, isKnown, log);
    item.taken = isKnown ? StoredValue::Of(value) : item.setting.value;
    return outcome;
}

bool SettingsLoader::FindChanged() {
    bool isAnyChanged = false;
    for (Item& item : items) {
        if (item.state != State::kTaken ||
            (item.feature.info->featureFlags & PxnFeatureFlagVolatile) != 0) {
            continue;
        }
        std::optional<StoredValue> present;
        AtPosition(item, 0, [&] {
            FeatureValue value;
            if (item.feature.Get().Read(value) == PxnErrSuccess) {
                present = StoredValue::Of(value);
            }
            return ServiceOutcome();
        });
        if (present && !(*present == item.taken)) {
            isAnyChanged = true;
            item.state = State::kPending;
            item.report.outcome = {MV_SERVICE_REFUSED, item.feature.Path() + ": another setting " +
                                                           "has changed it to " + present->Shown()};
        }
    }
    return isAnyChanged;
}

template <typename Body>
ServiceOutcome SettingsLoader::AtPosition(const Item& item, std::size_t level, const Body& body) {
    if (level == item.selectors.size()) {
        return body();
    }
    const auto& [selector, position] = item.selectors[level];
    SelectorScope scope(selector, failures);
    ServiceOutcome moved = scope.Move(position);
    return moved ? AtPosition(item, level + 1, body) : moved;
}

ServiceOutcome SettingsLoader::CheckPosition(const Item& item, bool& isThere) {
    isThere = true;
    for (const auto& [selector, position] : item.selectors) {
        const SelectorScope scope(selector, failures);
        if (!scope.Readable()) {
            return scope.Readable();
        }
        isThere = isThere && scope.Position() == position;
        std::vector<StoredValue> positions;
        if (scope.List(SettingsSaver::kMostPositions, positions) &&
            !IsPosition(positions, position)) {
            return {MV_SERVICE_OUT_OF_RANGE,
                    selector.Path() + ": cannot be moved to " + position.Shown()};
        }
    }
    return {};
}

} // namespace pyxen
