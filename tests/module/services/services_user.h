// services_user.h - a host that uses all services of a grabber
#pragma once

#include "mivora/module_services.h"
#include "platform/file_system.h"
#include "services/settings_file.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Calls each service, and each for all modules and features that are listed. Whatever is refused
/// has to have a reason; what receivers get has to be whole.
class ServicesUser {
public:
    /// The settings are saved to `path`.
    ServicesUser(IMivoraModuleServices& moduleServices, std::string path)
        : services(moduleServices), settingsPath(std::move(path)) {}

    /// True when the listing services and those for settings have worked.
    bool UseAll() {
        Texts modules;
        const bool isListed = Ended(services.ListModules(&AddText, &modules, &reason));
        for (const std::string& module : modules) {
            UseModule(module.c_str());
        }
        const bool areCamerasListed = Ended(services.ListCameras(&CheckCamera, nullptr, &reason));
        Ended(services.ReadDescriptionFile(&CheckData, nullptr, &reason));
        const bool areSettingsUsed = UseSettings();
        return isListed && areCamerasListed && areSettingsUsed;
    }

private:
    using Texts = std::vector<std::string>;

    struct Value {
        MV_FEATURE_VALUE record{};
        std::string text;
    };

    bool Ended(MV_SERVICE_RESULT result) {
        EXPECT_EQ(*reason.text == '\0', result == MV_SERVICE_OK) << result;
        reason.text[0] = '\0';
        return result == MV_SERVICE_OK;
    }

    void UseModule(const char* module) {
        Texts names;
        Ended(services.ListFeatures(module, &AddName, &names, &reason));
        for (const std::string& name : names) {
            Ended(services.DescribeFeature(module, name.c_str(), &CheckDescription, nullptr,
                                           &reason));
            Value value;
            if (Ended(services.ReadFeature(module, name.c_str(), &KeepValue, &value, &reason))) {
                value.record.text = value.text.c_str();
                Ended(services.WriteFeature(module, name.c_str(), &value.record, &KeepValue, &value,
                                            &reason));
            }
        }
    }

    bool UseSettings() {
        const char* const path = settingsPath.c_str();
        const MV_SERVICE_RESULT saved =
            services.SaveSettings(path, &CheckSetting, nullptr, &reason);
        const bool isSaved = Ended(saved);
        if (!isSaved && saved != MV_SERVICE_INCOMPLETE) {
            return false;
        }
        std::string text;
        std::string error;
        pyxen::SettingsFile file;
        EXPECT_TRUE(platform::ReadWholeFile(settingsPath, text, &error)) << error;
        EXPECT_TRUE(pyxen::ReadSettingsText(text, file, error)) << error;
        const bool isFit =
            Ended(services.LoadSettings(path, kMvSettingsDryRun, &CheckSetting, nullptr, &reason));
        const bool isLoaded =
            Ended(services.LoadSettings(path, 0, &CheckSetting, nullptr, &reason));
        return isSaved && isFit && isLoaded;
    }

    static void AddText(const char* text, void* context) {
        static_cast<Texts*>(context)->emplace_back(text);
    }
    static void AddName(const MV_FEATURE_DESCRIPTION* feature, void* context) {
        CheckDescription(feature, nullptr);
        static_cast<Texts*>(context)->emplace_back(feature->name);
    }
    static void CheckDescription(const MV_FEATURE_DESCRIPTION* feature, void*) {
        for (const char* const text :
             {feature->module, feature->name, feature->displayName, feature->category,
              feature->unit, feature->toolTip, feature->description, feature->nameSpace,
              feature->representation}) {
            EXPECT_NE(text, nullptr);
        }
        for (std::uint32_t index = 0; index < feature->entryCount; ++index) {
            EXPECT_NE(feature->entries[index], nullptr);
            EXPECT_LE(feature->entryAvailable[index], 1u);
        }
        for (std::uint32_t index = 0; index < feature->selectedCount; ++index) {
            EXPECT_NE(feature->selected[index], nullptr);
        }
    }
    static void KeepValue(const MV_FEATURE_VALUE* value, void* context) {
        Value& kept = *static_cast<Value*>(context);
        kept.record = *value;
        kept.text.assign(value->text, value->textBytes);
    }
    static void CheckCamera(const MV_CAMERA_DESCRIPTION* camera, void*) {
        for (const char* const text :
             {camera->id, camera->extendedId, camera->name, camera->vendor, camera->model,
              camera->serialNumber, camera->userName, camera->interfaceId, camera->interfaceName,
              camera->transportLayer}) {
            EXPECT_NE(text, nullptr);
        }
    }
    static void CheckData(const char* name, const void* data, std::uint64_t bytes, void*) {
        EXPECT_NE(name, nullptr);
        EXPECT_TRUE(data || bytes == 0);
    }
    static void CheckSetting(const MV_SETTING* setting, void*) {
        EXPECT_EQ(*setting->reason == '\0', setting->result == MV_SERVICE_OK) << setting->feature;
    }

    IMivoraModuleServices& services;
    const std::string settingsPath;
    MV_SERVICE_REASON reason{sizeof(MV_SERVICE_REASON), {}};
};
