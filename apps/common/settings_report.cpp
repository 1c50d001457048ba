// settings_report.cpp - what has become of settings, and where they differ
#include "apps/common/settings_report.h"

#include "apps/common/parse_number.h"

#include <map>

namespace {

/// Numbers may be spelled differently.
bool IsSameValue(const std::string& left, const std::string& right) {
    const auto leftNumber = ParseDouble(left);
    const auto rightNumber = ParseDouble(right);
    return left == right || (leftNumber && rightNumber && *leftNumber == *rightNumber);
}

std::string RefusalReason(const SettingReport& setting) {
    return setting.reason.empty() ? ServiceResultText(setting.result) : setting.reason;
}

using ValuesByName = std::map<std::string, std::string>;

ValuesByName ByName(const SettingsFile& file) {
    ValuesByName values;
    for (const FileSetting& setting : file.settings) {
        values.emplace(setting.name, setting.value);
    }
    return values;
}

JsonValue OptionalJson(const std::optional<std::string>& value) {
    return value ? JsonValue(*value) : nullptr;
}

} // namespace

std::string SettingName(const SettingReport& setting) {
    return setting.module + "/" + setting.feature +
           (setting.selector.empty() ? "" : "[" + setting.selector + "]");
}

std::vector<std::string> SettingRefusals(const std::vector<SettingReport>& settings) {
    std::vector<std::string> lines;
    for (const SettingReport& setting : settings) {
        if (setting.result != MV_SERVICE_OK) {
            lines.push_back(SettingName(setting) + "=" + setting.value + ": " +
                            RefusalReason(setting));
        }
    }
    return lines;
}

JsonValue SettingRefusalsJson(const std::vector<SettingReport>& settings) {
    std::vector<JsonValue> list;
    for (const SettingReport& setting : settings) {
        if (setting.result != MV_SERVICE_OK) {
            list.push_back(JsonObject({{"setting", SettingName(setting)},
                                       {"value", setting.value},
                                       {"reason", RefusalReason(setting)}}));
        }
    }
    return JsonArray(list);
}

LoadedSettings SortLoadedSettings(const std::vector<SettingReport>& settings, bool isDryRun) {
    LoadedSettings loaded;
    for (const SettingReport& setting : settings) {
        if (setting.result != MV_SERVICE_OK) {
            continue;
        }
        if (isDryRun && !setting.selector.empty() && setting.present.empty()) {
            ++loaded.unknown;
        } else if (!IsSameValue(setting.present, setting.value)) {
            loaded.changed.push_back(&setting);
        }
    }
    return loaded;
}

std::vector<JsonMember> LoadedMembers(const std::vector<SettingReport>& settings, bool isDryRun) {
    const LoadedSettings loaded = SortLoadedSettings(settings, isDryRun);
    std::vector<JsonValue> changed;
    changed.reserve(loaded.changed.size());
    for (const SettingReport* const setting : loaded.changed) {
        changed.push_back(JsonObject({{"setting", SettingName(*setting)},
                                      {"from", setting->present},
                                      {"to", setting->value}}));
    }
    const std::size_t same =
        settings.size() - loaded.changed.size() - loaded.unknown - SettingRefusals(settings).size();
    return {{"changed", JsonArray(changed)},
            {"same", std::uint64_t{same}},
            {"unknown", std::uint64_t{loaded.unknown}},
            {"refused", SettingRefusalsJson(settings)}};
}

std::vector<SettingDifference> FindDifferences(const SettingsFile& wanted,
                                               const SettingsFile& present) {
    const ValuesByName ofFile = ByName(wanted);
    const ValuesByName ofCamera = ByName(present);
    std::vector<SettingDifference> differences;
    for (const auto& [name, value] : wanted.settings) {
        const auto found = ofCamera.find(name);
        if (found == ofCamera.end()) {
            differences.push_back({name, std::nullopt, value});
        } else if (!IsSameValue(found->second, value)) {
            differences.push_back({name, found->second, value});
        }
    }
    for (const auto& [name, value] : present.settings) {
        if (ofFile.count(name) == 0) {
            differences.push_back({name, value, std::nullopt});
        }
    }
    return differences;
}

JsonValue DifferencesJson(const std::vector<SettingDifference>& differences) {
    std::vector<JsonValue> list;
    list.reserve(differences.size());
    for (const SettingDifference& difference : differences) {
        list.push_back(JsonObject({{"setting", difference.name},
                                   {"camera", OptionalJson(difference.camera)},
                                   {"file", OptionalJson(difference.file)}}));
    }
    return JsonArray(list);
}
