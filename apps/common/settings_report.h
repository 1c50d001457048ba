// settings_report.h - what has become of settings, and where they differ
#pragma once

#include "apps/common/json_text.h"
#include "apps/common/service_client.h"
#include "apps/common/settings_file.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// "Camera/Gain", with selectors "Camera/Gain[GainSelector=Red]".
std::string SettingName(const SettingReport& setting);

/// The settings that were not taken, with the reasons.
std::vector<std::string> SettingRefusals(const std::vector<SettingReport>& settings);
JsonValue SettingRefusalsJson(const std::vector<SettingReport>& settings);

/// What loading did, or would do, to the settings that were not refused.
struct LoadedSettings {
    std::vector<const SettingReport*> changed;
    std::size_t unknown = 0; ///< at other positions of their selectors
};

/// A dry run moves no selector, so that the value at another position is not known. `settings` has
/// to stay.
LoadedSettings SortLoadedSettings(const std::vector<SettingReport>& settings, bool isDryRun);
/// What was changed, was so already, is not known and was refused.
std::vector<JsonMember> LoadedMembers(const std::vector<SettingReport>& settings, bool isDryRun);

/// A setting that file and camera do not have alike; none where one of them lacks it.
struct SettingDifference {
    std::string name;
    std::optional<std::string> camera;
    std::optional<std::string> file;
};

/// In the order of the file, then what only the camera has.
std::vector<SettingDifference> FindDifferences(const SettingsFile& wanted,
                                               const SettingsFile& present);
JsonValue DifferencesJson(const std::vector<SettingDifference>& differences);
