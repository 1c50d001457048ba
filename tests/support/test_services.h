// test_services.h - services that have a version and serve nothing
#pragma once

#include "mivora/module_services.h"

/// Tests override what they want served.
class TestServices : public IMivoraModuleServices {
public:
    virtual ~TestServices() = default;

    uint32_t GetVersion() const override { return MIVORA_SERVICES_VERSION; }

    MV_SERVICE_RESULT ListModules(MV_TEXT_RECEIVER, void*, MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT ListFeatures(const char*, MV_FEATURE_RECEIVER, void*,
                                   MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT DescribeFeature(const char*, const char*, MV_FEATURE_RECEIVER, void*,
                                      MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT ReadFeature(const char*, const char*, MV_VALUE_RECEIVER, void*,
                                  MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT WriteFeature(const char*, const char*, const MV_FEATURE_VALUE*,
                                   MV_VALUE_RECEIVER, void*, MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT RunCommand(const char*, const char*, uint32_t, MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT Subscribe(const char*, const char*, MV_CHANGE_RECEIVER, void*, uint64_t*,
                                MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT Unsubscribe(uint64_t, MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT ReadDescriptionFile(MV_DATA_RECEIVER, void*, MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT GetFrameInfo(uint64_t, MV_FRAME_INFO*, MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT ReadChunks(uint64_t, MV_CHUNK_RECEIVER, void*, MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT InstallFrameReceiver(MV_FRAME_RECEIVER, void*, MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT ListCameras(MV_CAMERA_RECEIVER, void*, MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT SaveSettings(const char*, MV_SETTING_RECEIVER, void*,
                                   MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT ReadSentImage(uint64_t, MV_DATA_RECEIVER, void*,
                                    MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    MV_SERVICE_RESULT LoadSettings(const char*, uint32_t, MV_SETTING_RECEIVER, void*,
                                   MV_SERVICE_REASON*) override {
        return MV_SERVICE_NOT_SUPPORTED;
    }
};
