// setting_reports.h - what became of each setting
#pragma once

#include "mivora/module_services.h"
#include "services/service_outcome.h"
#include "services/settings_file.h"

#include <string>
#include <vector>

namespace pyxen {

/// What hosts receive about one setting, collected with the lock and passed on without it.
struct SettingReport {
    ServiceOutcome outcome;
    std::string module;
    std::string feature;
    std::string selector;
    std::string value;
    std::string present;

    SettingReport() = default;
    explicit SettingReport(const StoredSetting& setting)
        : module(setting.module),
          feature(setting.feature),
          selector(setting.ShownSelectors()),
          value(setting.value.Shown()) {}
};

/// Passes each report on; `receiver` may be null.
void PassReports(const std::vector<SettingReport>& reports, MV_SETTING_RECEIVER receiver,
                 void* context);
/// How all of them together ended: a camera that has gone before all else. `failures` are lines
/// about selectors that could not be moved back.
ServiceOutcome SummariseReports(const std::vector<SettingReport>& reports,
                                const std::vector<std::string>& failures);

} // namespace pyxen
