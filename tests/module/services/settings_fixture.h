// settings_fixture.h - saving and loading the settings of the scripted SDK's camera
#pragma once

#include "platform/file_system.h"
#include "tests/module/services/services_fixture.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// A setting as a receiver gets it.
struct ReceivedSetting {
    int32_t result;
    std::string path; ///< "Camera/Gain[GainSelector=Red]"
    std::string value;
    std::string present;
    std::string reason;
};

struct ReceivedSettings {
    std::vector<ReceivedSetting> all;

    static void Receive(const MV_SETTING* setting, void* context) {
        EXPECT_EQ(setting->size, sizeof *setting);
        std::string path = std::string(setting->module) + "/" + setting->feature;
        if (*setting->selector) {
            path += std::string("[") + setting->selector + "]";
        }
        static_cast<ReceivedSettings*>(context)->all.push_back(
            {setting->result, path, setting->value, setting->present, setting->reason});
    }
    const ReceivedSetting* Find(const std::string& path) const {
        const auto found =
            std::find_if(all.begin(), all.end(), [&](const auto& one) { return one.path == path; });
        return found == all.end() ? nullptr : &*found;
    }
    std::size_t CountFailed() const {
        return static_cast<std::size_t>(std::count_if(
            all.begin(), all.end(), [](const auto& one) { return one.result != MV_SERVICE_OK; }));
    }
};

inline std::string SettingsText(const std::string& settings) {
    return "{\"format\": \"Mivora settings\", \"version\": 1,\n\"camera\": {\"vendor\": \"\", "
           "\"model\": \"\", \"serial\": \"\", \"id\": \"\"},\n\"settings\": [" +
           settings + "]}";
}

inline std::string OneSetting(const std::string& feature, const std::string& type,
                              const std::string& value, const std::string& selectors = "{}") {
    return "{\"module\": \"Camera\", \"feature\": \"" + feature +
           "\", \"selectors\": " + selectors + ", \"type\": \"" + type + "\", \"value\": " + value +
           "}";
}

inline std::string ReadText(const std::string& path) {
    std::string text;
    EXPECT_TRUE(platform::ReadWholeFile(path, text));
    return text;
}

/// Calls both services for a file.
class SettingsCalls {
public:
    SettingsCalls(IMivoraModuleServices& moduleServices, std::string filePath)
        : services(moduleServices), path(std::move(filePath)) {}

    MV_SERVICE_RESULT Save() {
        got.all.clear();
        return services.SaveSettings(path.c_str(), &ReceivedSettings::Receive, &got, &reason);
    }
    MV_SERVICE_RESULT Load(uint32_t flags = 0) {
        got.all.clear();
        return services.LoadSettings(path.c_str(), flags, &ReceivedSettings::Receive, &got,
                                     &reason);
    }
    MV_SERVICE_RESULT Load(const std::string& settings, uint32_t flags = 0) {
        WriteWhole(SettingsText(settings));
        return Load(flags);
    }
    void WriteWhole(const std::string& text) const {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    }
    const std::string& Path() const { return path; }

    ReceivedSettings got;
    MV_SERVICE_REASON reason{sizeof(MV_SERVICE_REASON), {}};

private:
    IMivoraModuleServices& services;
    const std::string path;
};

inline scripted::Feature Streamed(scripted::Feature feature) {
    feature.isStreamable = true;
    return feature;
}

class SettingsServiceTest : public ServicesFixture {
protected:
    void SetUp() override {
        ServicesFixture::SetUp();
        scripted::Feature selector =
            scripted::EnumFeature("GainSelector", "All", {{"All", 0}, {"Red", 1}, {"Blue", 2}});
        selector.entries[2].available = false;
        selector.selected = {"Gain"};
        Camera().Put(selector);
        Camera().Put(Streamed(scripted::FloatFeature("Gain", 1.5, 0, 10)));
        for (const char* const name : {"Width", "DeviceUserID", "ReverseX", "PayloadSize"}) {
            Camera()[name].isStreamable = true;
        }
    }
    SettingsCalls& File() {
        if (!calls) {
            calls.emplace(Services(), directory.PathOf("camera.json"));
        }
        return *calls;
    }
    /// The calls that write, which are forgotten.
    Texts Writes() {
        Texts writes;
        for (const std::string& call : Calls()) {
            if (call.find("Set(") != std::string::npos) {
                writes.push_back(call);
            }
        }
        return writes;
    }

    std::optional<SettingsCalls> calls;
};
