// setting_reports.cpp - what became of each setting
#include "services/setting_reports.h"

#include <algorithm>
#include <cstddef>

namespace pyxen {

void PassReports(const std::vector<SettingReport>& reports, MV_SETTING_RECEIVER receiver,
                 void* context) {
    if (!receiver) {
        return;
    }
    for (const SettingReport& report : reports) {
        MV_SETTING record{};
        record.size = sizeof record;
        record.result = report.outcome.result;
        record.module = report.module.c_str();
        record.feature = report.feature.c_str();
        record.selector = report.selector.c_str();
        record.value = report.value.c_str();
        record.present = report.present.c_str();
        record.reason = report.outcome.reason.c_str();
        CallReceiver(receiver, static_cast<const MV_SETTING*>(&record), context);
    }
}

ServiceOutcome SummariseReports(const std::vector<SettingReport>& reports,
                                const std::vector<std::string>& failures) {
    const auto failed = [](const SettingReport& report) {
        return !report.outcome;
    };
    const auto count = std::count_if(reports.begin(), reports.end(), failed);
    if (count == 0 && failures.empty()) {
        return {};
    }
    ServiceOutcome outcome{MV_SERVICE_INCOMPLETE, ""};
    if (count > 0) {
        const auto gone = std::find_if(reports.begin(), reports.end(), [](const auto& report) {
            return report.outcome.result == MV_SERVICE_NO_CAMERA;
        });
        const auto first = std::find_if(reports.begin(), reports.end(), failed);
        if (gone != reports.end()) {
            outcome.result = MV_SERVICE_NO_CAMERA;
        }
        outcome.reason = std::to_string(count) + " of " + std::to_string(reports.size()) +
                         " settings failed, such as " +
                         (gone != reports.end() ? gone : first)->outcome.reason;
    }
    for (const std::string& failure : failures) {
        outcome.reason += (outcome.reason.empty() ? "" : "; ") + failure;
    }
    return outcome;
}

} // namespace pyxen
