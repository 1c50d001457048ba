// settings_command.cpp - settings files: saved, loaded, compared with the camera, shown
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/common/parse_number.h"
#include "apps/common/service_client.h"
#include "apps/common/session.h"
#include "apps/common/settings_file.h"
#include "apps/common/whole_file.h"
#include "apps/mivora/commands.h"
#include "platform/file_system.h"
#include "platform/printable_text.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

struct SettingsOptions {
    std::string file;
    bool isDryRun = false;
    bool json = false;
};

void PrintSettingLine(const std::string& text) {
    std::printf("%s\n", platform::PrintableText(text).c_str());
}

std::string SettingName(const SettingReport& setting) {
    return setting.module + "/" + setting.feature +
           (setting.selector.empty() ? "" : "[" + setting.selector + "]");
}

/// Numbers may be spelled differently.
bool IsSameValue(const std::string& left, const std::string& right) {
    const auto leftNumber = ParseDouble(left);
    const auto rightNumber = ParseDouble(right);
    return left == right || (leftNumber && rightNumber && *leftNumber == *rightNumber);
}

std::string RefusalReason(const SettingReport& setting) {
    return setting.reason.empty() ? ServiceResultText(setting.result) : setting.reason;
}

/// The settings that were not taken, with the reasons.
std::vector<std::string> Refusals(const std::vector<SettingReport>& settings) {
    std::vector<std::string> lines;
    for (const SettingReport& setting : settings) {
        if (setting.result != MV_SERVICE_OK) {
            lines.push_back(SettingName(setting) + "=" + setting.value + ": " +
                            RefusalReason(setting));
        }
    }
    return lines;
}

JsonValue RefusalsJson(const std::vector<SettingReport>& settings) {
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

std::string CountText(std::size_t count, std::size_t all) {
    return std::to_string(count) + " of " + std::to_string(all) + " settings";
}

void Save(Session& session, const SettingsOptions& options) {
    ServiceClient& services = session.Services();
    session.OpenCamera();
    const SettingsOutcome outcome = services.SaveSettings(options.file);
    const std::vector<std::string> missing = Refusals(outcome.settings);
    const std::size_t count = outcome.settings.size();
    if (options.json) {
        PrintReport({{"file", options.file},
                     {"saved", std::uint64_t{count - missing.size()}},
                     {"refused", RefusalsJson(outcome.settings)}});
    } else {
        PrintSettingLine(CountText(count - missing.size(), count) + " saved to " + options.file);
    }
    if (!outcome.isComplete) {
        throw CommandFailure(options.file + ": " + outcome.reason, missing);
    }
}

/// What loading did, or would do, to the settings that were not refused.
struct LoadedSettings {
    std::vector<const SettingReport*> changed;
    std::size_t unknown = 0; // at other positions of their selectors
};

/// A dry run moves no selector, so that the value at another position is not known.
LoadedSettings SortLoaded(const std::vector<SettingReport>& settings, bool isDryRun) {
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

void PrintLoadedJson(const SettingsOptions& options, const std::vector<SettingReport>& settings,
                     const LoadedSettings& loaded, std::size_t same) {
    std::vector<JsonValue> changed;
    changed.reserve(loaded.changed.size());
    for (const SettingReport* const setting : loaded.changed) {
        changed.push_back(JsonObject({{"setting", SettingName(*setting)},
                                      {"from", setting->present},
                                      {"to", setting->value}}));
    }
    PrintReport({{"file", options.file},
                 {"dryRun", options.isDryRun},
                 {"changed", JsonArray(changed)},
                 {"same", std::uint64_t{same}},
                 {"unknown", std::uint64_t{loaded.unknown}},
                 {"refused", RefusalsJson(settings)}});
}

void PrintLoaded(const SettingsOptions& options, std::size_t count, const LoadedSettings& loaded,
                 std::size_t same, std::size_t refused) {
    for (const SettingReport* const setting : loaded.changed) {
        PrintSettingLine(SettingName(*setting) + ": " + setting->present + " -> " + setting->value);
    }
    PrintSettingLine(
        CountText(loaded.changed.size(), count) +
        (options.isDryRun ? " would be written, " : " written, ") + std::to_string(same) +
        " as they were, " + std::to_string(refused) + " refused" +
        (loaded.unknown == 0
             ? ""
             : ", " + std::to_string(loaded.unknown) + " at other positions of their selectors"));
}

void Load(Session& session, const SettingsOptions& options) {
    ServiceClient& services = session.Services();
    session.OpenCamera();
    const SettingsOutcome outcome = services.LoadSettings(options.file, options.isDryRun);
    const LoadedSettings loaded = SortLoaded(outcome.settings, options.isDryRun);
    const std::vector<std::string> refused = Refusals(outcome.settings);
    const std::size_t count = outcome.settings.size();
    const std::size_t same = count - loaded.changed.size() - loaded.unknown - refused.size();
    if (options.json) {
        PrintLoadedJson(options, outcome.settings, loaded, same);
    } else {
        PrintLoaded(options, count, loaded, same, refused.size());
    }
    if (!outcome.isComplete) {
        std::fflush(stdout);
        throw CommandFailure(options.file + ": " + outcome.reason, refused);
    }
}

/// The camera's settings by way of a temporary file.
SettingsFile SettingsOfCamera(Session& session) {
    const std::string directory = platform::CreateTemporaryDirectory("mivora-");
    if (directory.empty()) {
        throw CommandFailure("cannot create a directory for temporary files");
    }
    const std::string path = platform::JoinPath(directory, "settings.json");
    try {
        const SettingsOutcome outcome = session.Services().SaveSettings(path);
        if (!outcome.isComplete) {
            throw CommandFailure("not all settings of " + session.ActCameraText() +
                                     " can be read: " + outcome.reason,
                                 Refusals(outcome.settings));
        }
        SettingsFile settings = ParseSettingsFile(path, ReadWholeFile(path));
        platform::RemoveDirectoryTree(directory);
        return settings;
    } catch (...) {
        platform::RemoveDirectoryTree(directory);
        throw;
    }
}

using ValuesByName = std::map<std::string, std::string>;

ValuesByName ByName(const SettingsFile& file) {
    ValuesByName values;
    for (const FileSetting& setting : file.settings) {
        values.emplace(setting.name, setting.value);
    }
    return values;
}

/// A setting that file and camera do not have alike; none where one of them lacks it.
struct SettingDifference {
    std::string name;
    std::optional<std::string> camera;
    std::optional<std::string> file;
};

/// In the order of the file, then what only the camera has.
std::vector<SettingDifference> Differences(const SettingsFile& wanted,
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

std::string DifferenceText(const SettingDifference& difference) {
    const auto& [name, camera, file] = difference;
    if (!camera) {
        return name + ": file " + file.value() + ", no setting of the camera";
    }
    return name + ": camera " + *camera + (file ? ", file " + *file : ", not in the file");
}

JsonValue OptionalJson(const std::optional<std::string>& value) {
    return value ? JsonValue(*value) : nullptr;
}

void Diff(Session& session, const SettingsOptions& options) {
    const SettingsFile wanted = ParseSettingsFile(options.file, ReadWholeFile(options.file));
    session.Services();
    session.OpenCamera();
    const std::vector<SettingDifference> differences =
        Differences(wanted, SettingsOfCamera(session));
    std::vector<JsonValue> list;
    for (const SettingDifference& difference : differences) {
        if (options.json) {
            list.push_back(JsonObject({{"setting", difference.name},
                                       {"camera", OptionalJson(difference.camera)},
                                       {"file", OptionalJson(difference.file)}}));
        } else {
            PrintSettingLine(DifferenceText(difference));
        }
    }
    if (options.json) {
        PrintReport({{"file", options.file}, {"differences", JsonArray(list)}});
    }
    if (!differences.empty()) {
        throw ExitStatus{1};
    }
}

void ShowJson(const SettingsFile& file) {
    std::vector<JsonValue> list;
    list.reserve(file.settings.size());
    for (const FileSetting& setting : file.settings) {
        list.push_back(JsonObject({{"setting", setting.name}, {"value", setting.value}}));
    }
    PrintReport({{"camera", file.camera}, {"settings", JsonArray(list)}});
}

void Show(const SettingsOptions& options) {
    const SettingsFile file = ParseSettingsFile(options.file, ReadWholeFile(options.file));
    if (options.json) {
        ShowJson(file);
        return;
    }
    if (!file.camera.empty()) {
        PrintSettingLine("# " + file.camera);
    }
    for (const FileSetting& setting : file.settings) {
        PrintSettingLine(setting.name + "=" + setting.value);
    }
}

constexpr const char* kSettingsFooter =
    "A settings file has the features that a camera can stream to a file, each with its value at\n"
    "every position of the selectors. Loading writes them in an order in which the camera takes\n"
    "them; what it refuses is named with the reason, all else holds, and the status is 1.\n"
    "\n"
    "Examples:\n"
    "  mivora settings save bench.json\n"
    "  mivora --camera 1 settings load bench.json --dry-run\n"
    "  mivora --camera 1 settings load bench.json\n"
    "  mivora settings diff bench.json\n";

} // namespace

void AddSettingsCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command =
        program.AddCommand("settings", "Save, load, compare and show the settings of a camera");
    command.RequireCommand();
    command.SetFooter(kSettingsFooter);
    const auto settings = std::make_shared<SettingsOptions>();
    const auto add = [&](const char* name, const char* text) {
        Command action = command.AddCommand(name, text);
        action.AddOption("FILE", settings->file, "The settings file").Required().TypeName("FILE");
        action.AddJson(settings->json);
        return action;
    };
    const auto addWithCamera = [&](const char* name, const char* text,
                                   void (*run)(Session&, const SettingsOptions&)) {
        Command action = add(name, text);
        action.OnRun([&options, maker, settings, run] {
            Session session(options, maker());
            run(session, *settings);
        });
        return action;
    };
    addWithCamera("save", "Save the camera's settings to a file", Save);
    Command load = addWithCamera("load", "Write the settings of a file to the camera", Load);
    load.AddFlag("--dry-run", settings->isDryRun, "Check and report, and write nothing");
    addWithCamera("diff", "Show what differs between camera and file; then the status is 1", Diff);
    Command show = add("show", "Show the settings of a file; no camera is needed");
    show.ExcludesCameraOptions();
    show.OnRun([settings] { Show(*settings); });
}
