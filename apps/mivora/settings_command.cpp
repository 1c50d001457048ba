// settings_command.cpp - settings files: saved, loaded, compared with the camera, shown
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/common/service_client.h"
#include "apps/common/session.h"
#include "apps/common/settings_file.h"
#include "apps/common/settings_report.h"
#include "apps/common/whole_file.h"
#include "apps/mivora/commands.h"
#include "platform/file_system.h"
#include "platform/printable_text.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
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

std::string CountText(std::size_t count, std::size_t all) {
    return std::to_string(count) + " of " + std::to_string(all) + " settings";
}

void Save(Session& session, const SettingsOptions& options) {
    ServiceClient& services = session.Services();
    session.OpenCamera();
    const SettingsOutcome outcome = services.SaveSettings(options.file);
    const std::vector<std::string> missing = SettingRefusals(outcome.settings);
    const std::size_t count = outcome.settings.size();
    if (options.json) {
        PrintReport({{"file", options.file},
                     {"saved", std::uint64_t{count - missing.size()}},
                     {"refused", SettingRefusalsJson(outcome.settings)}});
    } else {
        PrintSettingLine(CountText(count - missing.size(), count) + " saved to " + options.file);
    }
    if (!outcome.isComplete) {
        throw CommandFailure(options.file + ": " + outcome.reason, missing);
    }
}

void PrintLoadedJson(const SettingsOptions& options, const std::vector<SettingReport>& settings) {
    std::vector<JsonMember> members = {{"file", options.file}, {"dryRun", options.isDryRun}};
    const std::vector<JsonMember> outcome = LoadedMembers(settings, options.isDryRun);
    members.insert(members.end(), outcome.begin(), outcome.end());
    PrintReport(members);
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
    const LoadedSettings loaded = SortLoadedSettings(outcome.settings, options.isDryRun);
    const std::vector<std::string> refused = SettingRefusals(outcome.settings);
    const std::size_t count = outcome.settings.size();
    const std::size_t same = count - loaded.changed.size() - loaded.unknown - refused.size();
    if (options.json) {
        PrintLoadedJson(options, outcome.settings);
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
                                 SettingRefusals(outcome.settings));
        }
        SettingsFile settings = ParseSettingsFile(path, ReadWholeFile(path));
        platform::RemoveDirectoryTree(directory);
        return settings;
    } catch (...) {
        platform::RemoveDirectoryTree(directory);
        throw;
    }
}

std::string DifferenceText(const SettingDifference& difference) {
    const auto& [name, camera, file] = difference;
    if (!camera) {
        return name + ": file " + file.value() + ", no setting of the camera";
    }
    return name + ": camera " + *camera + (file ? ", file " + *file : ", not in the file");
}

void Diff(Session& session, const SettingsOptions& options) {
    const SettingsFile wanted = ParseSettingsFile(options.file, ReadWholeFile(options.file));
    session.Services();
    session.OpenCamera();
    const std::vector<SettingDifference> differences =
        FindDifferences(wanted, SettingsOfCamera(session));
    if (options.json) {
        PrintReport({{"file", options.file}, {"differences", DifferencesJson(differences)}});
    } else {
        for (const SettingDifference& difference : differences) {
            PrintSettingLine(DifferenceText(difference));
        }
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
