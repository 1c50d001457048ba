// settings_command.cpp - settings files: saved, loaded, compared with the camera, shown
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/parse_number.h"
#include "apps/common/service_client.h"
#include "apps/common/session.h"
#include "apps/common/settings_file.h"
#include "apps/common/whole_file.h"
#include "apps/mivora/commands.h"
#include "platform/file_system.h"
#include "platform/printable_text.h"

#include <cstdio>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

struct SettingsOptions {
    std::string file;
    bool isDryRun = false;
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

/// The settings that were not taken, with the reasons.
std::vector<std::string> Refusals(const std::vector<SettingReport>& settings) {
    std::vector<std::string> lines;
    for (const SettingReport& setting : settings) {
        if (setting.result != MV_SERVICE_OK) {
            lines.push_back(
                SettingName(setting) + "=" + setting.value + ": " +
                (setting.reason.empty() ? ServiceResultText(setting.result) : setting.reason));
        }
    }
    return lines;
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
    PrintSettingLine(CountText(count - missing.size(), count) + " saved to " + options.file);
    if (!outcome.isComplete) {
        throw CommandFailure(options.file + ": " + outcome.reason, missing);
    }
}

void Load(Session& session, const SettingsOptions& options) {
    ServiceClient& services = session.Services();
    session.OpenCamera();
    const SettingsOutcome outcome = services.LoadSettings(options.file, options.isDryRun);
    const std::size_t count = outcome.settings.size();
    std::size_t written = 0;
    std::size_t unknown = 0;
    for (const SettingReport& setting : outcome.settings) {
        if (setting.result != MV_SERVICE_OK) {
            continue;
        }
        // A dry run moves no selector, so that the value at another position is not known.
        if (options.isDryRun && !setting.selector.empty() && setting.present.empty()) {
            ++unknown;
        } else if (!IsSameValue(setting.present, setting.value)) {
            ++written;
            PrintSettingLine(SettingName(setting) + ": " + setting.present + " -> " +
                             setting.value);
        }
    }
    const std::vector<std::string> refused = Refusals(outcome.settings);
    PrintSettingLine(
        CountText(written, count) + (options.isDryRun ? " would be written, " : " written, ") +
        std::to_string(count - written - unknown - refused.size()) + " as they were, " +
        std::to_string(refused.size()) + " refused" +
        (unknown == 0 ? ""
                      : ", " + std::to_string(unknown) + " at other positions of their selectors"));
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

/// Prints each difference in the order of the file; false when there is none.
bool PrintDifferences(const SettingsFile& wanted, const SettingsFile& present) {
    const ValuesByName ofFile = ByName(wanted);
    const ValuesByName ofCamera = ByName(present);
    bool differs = false;
    const auto print = [&](std::string text, std::initializer_list<const char*> rest) {
        differs = true;
        for (const char* const part : rest) {
            text += part;
        }
        PrintSettingLine(text);
    };
    for (const auto& [name, value] : wanted.settings) {
        const auto found = ofCamera.find(name);
        if (found == ofCamera.end()) {
            print(name, {": file ", value.c_str(), ", no setting of the camera"});
        } else if (!IsSameValue(found->second, value)) {
            print(name, {": camera ", found->second.c_str(), ", file ", value.c_str()});
        }
    }
    for (const auto& [name, value] : present.settings) {
        if (ofFile.count(name) == 0) {
            print(name, {": camera ", value.c_str(), ", not in the file"});
        }
    }
    return differs;
}

void Diff(Session& session, const SettingsOptions& options) {
    const SettingsFile wanted = ParseSettingsFile(options.file, ReadWholeFile(options.file));
    session.Services();
    session.OpenCamera();
    if (PrintDifferences(wanted, SettingsOfCamera(session))) {
        throw ExitStatus{1};
    }
}

void Show(const SettingsOptions& options) {
    const SettingsFile file = ParseSettingsFile(options.file, ReadWholeFile(options.file));
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
    add("show", "Show the settings of a file; no camera is needed").OnRun([settings] {
        Show(*settings);
    });
}
