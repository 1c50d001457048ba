// engine_fixture.h - the synchronisation engine between three modules of the scripted SDK
#pragma once

#include "platform/text.h"
#include "sync/feature_cache.h"
#include "sync/feature_caches.h"
#include "sync/feature_syncher.h"
#include "sync/sync_engine.h"
#include "tests/module/sdk/loaded_api.h"
#include "tests/support/temporary_directory.h"

#include <string>
#include <utility>
#include <vector>

/// Features are put into the model first (Camera(), Device(), Port()), then Fill lists them.
class EngineFixture : public LoadedApi, protected pyxen::IFeatureCaches {
protected:
    void SetUp() override {
        LoadedApi::SetUp();
        Camera().features.clear();
        Device().features.clear();
        Port().features.clear();
    }

    scripted::Module& Camera() { return sdk.Data().cameras[0]; }
    scripted::Module& Device() { return sdk.Data().cameras[0].localDevice; }
    scripted::Module& Port() { return sdk.Data().interfaces[0]; }

    void Fill() {
        ASSERT_TRUE(camera.Init("Camera", &api, scripted::CameraHandle(), &sink));
        ASSERT_TRUE(device.Init("Localdevice", &api, scripted::LocalDeviceHandle(), &sink));
        ASSERT_TRUE(port.Init("Interface", &api, scripted::InterfaceHandle(), &sink));
        sink.Take();
        sdk.ClearCalls();
    }

    /// "Camera::Width" makes it watched by what follows: "Localdevice::Width".
    using Declaration = std::pair<std::string, std::vector<std::string>>;
    void Rules(const std::vector<Declaration>& declarations) {
        std::string content = R"({"SyncFeatures":[)";
        for (std::size_t entry = 0; entry < declarations.size(); ++entry) {
            content += (entry == 0 ? "{" : ",{") + Reference(declarations[entry].first) +
                       R"(,"Dependencies":[)";
            const auto& dependencies = declarations[entry].second;
            for (std::size_t index = 0; index < dependencies.size(); ++index) {
                content += (index == 0 ? "{" : ",{") + Reference(dependencies[index]) + "}";
            }
            content += "]}";
        }
        const std::string path = directory.Write("sync.json", content + "]}");
        ASSERT_EQ(rules.Init(path.c_str(), nullptr), 1);
    }

    FeatureCache* FindCacheByName(const char* name) override {
        for (FeatureCache* cache : {&port, &device, &camera}) {
            if (cache->GetModuleName() &&
                platform::CompareNoCase(cache->GetModuleName(), name) == 0) {
                return cache;
            }
        }
        return nullptr;
    }

    static std::string Reference(const std::string& text) {
        const std::size_t colons = text.find("::");
        return R"("ModuleName":")" + text.substr(0, colons) + R"(","FeatureName":")" +
               text.substr(colons + 2) + "\"";
    }

    support::TemporaryDirectory directory;
    FeatureCache camera;
    FeatureCache device;
    FeatureCache port;
    FeatureSyncher rules;
    pyxen::SyncEngine engine{api, rules, *this, &sink};
    pyxen::SyncEngine silentEngine{api, rules, *this, nullptr};
};
