// settings_service.cpp - saving and loading the settings of a camera
#include "services/settings_service.h"

#include "platform/file_system.h"
#include "services/held_log.h"
#include "services/setting_reports.h"
#include "services/settings_file.h"
#include "services/settings_loader.h"
#include "services/settings_saver.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace pyxen {

namespace {

ServiceOutcome FileFailure(const std::string& path, const std::string& why) {
    return {MV_SERVICE_FILE_FAILED, path + ": " + why};
}

ServiceOutcome NoOpenCamera() {
    return {MV_SERVICE_NO_CAMERA, "no camera is open"};
}

ServiceOutcome ReadFile(const std::string& path, SettingsFile& file) {
    std::error_code failure;
    const std::uintmax_t size = std::filesystem::file_size(path, failure);
    if (!failure && size > kMostSettingsBytes) {
        return FileFailure(path, "more than " + std::to_string(kMostSettingsBytes) + " bytes");
    }
    std::string text;
    std::string error;
    if (!platform::ReadWholeFile(path, text, &error) || !ReadSettingsText(text, file, error)) {
        return FileFailure(path, error);
    }
    return {};
}

ServiceOutcome WriteFile(const std::string& path, const SettingsFile& file) {
    const std::string text = WriteSettingsText(file);
    if (text.size() > kMostSettingsBytes) {
        return FileFailure(path, "the settings take more than " +
                                     std::to_string(kMostSettingsBytes) + " bytes");
    }
    std::string error;
    if (!platform::ReplaceWholeFile(path, text, &error)) {
        return FileFailure(path, error);
    }
    return {};
}

} // namespace

ServiceOutcome SettingsService::Save(const char* path, MV_SETTING_RECEIVER receiver,
                                     void* receiverContext) {
    SettingsSaver saver(context);
    ServiceOutcome outcome = context.WhileLocked([&] {
        if (!context.Grabber().HasOpenCamera()) {
            return NoOpenCamera();
        }
        saver.Collect();
        return SummariseReports(saver.Reports(), saver.Failures());
    });
    if (outcome || outcome.result == MV_SERVICE_INCOMPLETE) {
        if (ServiceOutcome written = WriteFile(path, saver.File()); !written) {
            outcome = std::move(written);
        }
    }
    PassReports(saver.Reports(), receiver, receiverContext);
    return outcome;
}

ServiceOutcome SettingsService::Load(const char* path, std::uint32_t flags,
                                     MV_SETTING_RECEIVER receiver, void* receiverContext) {
    if ((flags & ~kMvSettingsDryRun) != 0) {
        return {MV_SERVICE_BAD_ARGUMENT, "unknown flags"};
    }
    SettingsFile file;
    ServiceOutcome outcome = ReadFile(path, file);
    if (!outcome) {
        return outcome;
    }
    std::vector<SettingReport> reports;
    {
        HeldLog lines(context.Grabber().Log()); // written when the lock is free again
        outcome = context.WhileLocked([&] {
            if (!context.Grabber().HasOpenCamera()) {
                return NoOpenCamera();
            }
            SettingsLoader loader(context, features, file.settings,
                                  (flags & kMvSettingsDryRun) != 0, lines.Log());
            loader.Apply();
            reports = loader.Reports();
            return SummariseReports(reports, loader.Failures());
        });
    }
    PassReports(reports, receiver, receiverContext);
    return outcome;
}

} // namespace pyxen
