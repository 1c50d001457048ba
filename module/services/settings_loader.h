// settings_loader.h - giving settings to the open camera
#pragma once

#include "sdk/logger.h"
#include "services/feature_service.h"
#include "services/selector_scope.h"
#include "services/service_context.h"
#include "services/setting_reports.h"
#include "services/settings_file.h"

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace pyxen {

/// Writes settings to the modules of the open camera. With the service lock.
///
/// What can be written depends on what else has been: settings that are refused are tried again as
/// long as others are taken, and those that another one has changed are written anew.
class SettingsLoader {
public:
    /// `settings` must outlive the object. `dryRun` writes nothing. The lines of checking and
    /// synchronising go to `sink`.
    SettingsLoader(ServiceContext& shared, FeatureService& featureService,
                   const std::vector<StoredSetting>& settings, bool dryRun, Logger sink);

    void Apply();

    /// In the order of the settings.
    std::vector<SettingReport> Reports() const;
    /// About selectors that could not be moved back.
    const std::vector<std::string>& Failures() const { return failures; }

private:
    enum class State { kHopeless, kPending, kTaken };

    struct Item {
        explicit Item(const StoredSetting& fromFile) : setting(fromFile), report(fromFile) {}

        const StoredSetting& setting;
        SettingReport report;
        State state = State::kHopeless;
        ServiceFeature feature;
        std::vector<std::pair<ServiceFeature, StoredValue>> selectors; // the outermost first
        bool isPresentKnown = false;
        StoredValue taken; // what the feature held afterwards
    };

    ServiceOutcome Find(Item& item);
    const SelectorMap& SelectorsOf(const ServiceModule& module);
    /// Tries all that are pending until none of them is taken any more.
    void TryPending();
    void Try(Item& item);
    /// Puts back what no longer holds its value; false when all do.
    bool FindChanged();
    ServiceOutcome TryAtPosition(Item& item);
    ServiceOutcome Write(Item& item);

    /// Moves the selectors from `level` on and runs `body` there.
    template <typename Body>
    ServiceOutcome AtPosition(const Item& item, std::size_t level, const Body& body);
    /// Without moving a selector. `isThere` is false when `body` would not see the feature's value.
    ServiceOutcome CheckPosition(const Item& item, bool& isThere);

    ServiceContext& context;
    FeatureService& features;
    const bool isDry;
    const Logger log;
    std::vector<Item> items;
    std::map<FeatureCache*, SelectorMap> selectorMaps; // by the module's cache
    std::vector<std::string> failures;
    bool hasCameraGone = false;
};

} // namespace pyxen
