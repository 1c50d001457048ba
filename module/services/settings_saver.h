// settings_saver.h - collecting the settings of the open camera
#pragma once

#include "services/selector_scope.h"
#include "services/service_context.h"
#include "services/setting_reports.h"
#include "services/settings_file.h"

#include <cstddef>
#include <string>
#include <vector>

namespace pyxen {

/// Reads the settings of all modules of the open camera, with one value for each position of their
/// selectors. With the service lock.
class SettingsSaver {
public:
    explicit SettingsSaver(ServiceContext& shared) : context(shared) {}

    /// Of more positions a feature has the first ones saved.
    static constexpr std::size_t kMostPositions = 4096;

    void Collect();

    const SettingsFile& File() const { return file; }
    const std::vector<SettingReport>& Reports() const { return reports; }
    /// About selectors that could not be moved back.
    const std::vector<std::string>& Failures() const { return failures; }

private:
    void DescribeCamera(const ServiceModule& camera);
    void CollectModule(const ServiceModule& module);
    /// Moves the selectors from `level` on through all their positions.
    void Walk(const ServiceFeature& feature, const std::vector<const PxnFeatureInfo*>& chain,
              std::size_t level);
    void WalkThroughSelector(const ServiceFeature& feature,
                             const std::vector<const PxnFeatureInfo*>& chain, std::size_t level);
    void SaveOne(const ServiceFeature& feature);
    void Report(const ServiceOutcome& outcome);

    ServiceContext& context;
    SettingsFile file;
    std::vector<SettingReport> reports;
    std::vector<std::string> failures;
    StoredSetting current; // where the selectors stand
    std::size_t positions = 0;
    bool hasCameraGone = false;
};

} // namespace pyxen
