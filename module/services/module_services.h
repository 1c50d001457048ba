// module_services.h - what this module offers beside its grabber
#pragma once

#include "mivora/module_services.h"
#include "services/feature_service.h"
#include "services/frame_service.h"
#include "services/service_context.h"
#include "services/settings_service.h"
#include "services/subscriptions.h"

#include <cstdint>

namespace pyxen {

/// The services of one grabber, which owns them. See IMivoraModuleServices.
class ModuleServices final : public IMivoraModuleServices {
public:
    /// `grabber` must outlive this object.
    explicit ModuleServices(IServiceGrabber& grabber)
        : context(grabber),
          features(context),
          subscriptions(context),
          frames(context),
          settings(context, features) {}
    ModuleServices(const ModuleServices&) = delete;
    ModuleServices& operator=(const ModuleServices&) = delete;

    // ---- for the grabber ----

    /// Held by whatever changes handles, caches or lists.
    ServiceLock& Lock() RETURN_CAPABILITY(context.Lock()) { return context.Lock(); }
    /// With the lock: the open camera is about to be closed or replaced.
    void LeaveCamera();
    /// With the lock: the SDK is about to be shut down.
    void LeaveSdk();
    /// True inside a receiver of changes of any grabber: the SDK waits for it where it closes a
    /// camera, so that nothing may wait there.
    static bool IsInsideReceiver() { return Subscriptions::IsInsideReceiver(); }

    // ---- for the host ----
    uint32_t GetVersion() const override { return MIVORA_SERVICES_VERSION; }
    MV_SERVICE_RESULT ListModules(MV_TEXT_RECEIVER receiver, void* receiverContext,
                                  MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT ListFeatures(const char* module, MV_FEATURE_RECEIVER receiver,
                                   void* receiverContext, MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT DescribeFeature(const char* module, const char* feature,
                                      MV_FEATURE_RECEIVER receiver, void* receiverContext,
                                      MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT ReadFeature(const char* module, const char* feature,
                                  MV_VALUE_RECEIVER receiver, void* receiverContext,
                                  MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT WriteFeature(const char* module, const char* feature,
                                   const MV_FEATURE_VALUE* value, MV_VALUE_RECEIVER receiver,
                                   void* receiverContext, MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT RunCommand(const char* module, const char* feature, uint32_t timeoutMs,
                                 MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT Subscribe(const char* module, const char* feature,
                                MV_CHANGE_RECEIVER receiver, void* receiverContext,
                                uint64_t* subscription, MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT Unsubscribe(uint64_t subscription, MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT ReadDescriptionFile(MV_DATA_RECEIVER receiver, void* receiverContext,
                                          MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT GetFrameInfo(uint64_t bufferIndex, MV_FRAME_INFO* info,
                                   MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT ReadChunks(uint64_t bufferIndex, MV_CHUNK_RECEIVER receiver,
                                 void* receiverContext, MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT InstallFrameReceiver(MV_FRAME_RECEIVER receiver, void* receiverContext,
                                           MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT ListCameras(MV_CAMERA_RECEIVER receiver, void* receiverContext,
                                  MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT SaveSettings(const char* path, MV_SETTING_RECEIVER receiver,
                                   void* receiverContext, MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT LoadSettings(const char* path, uint32_t flags, MV_SETTING_RECEIVER receiver,
                                   void* receiverContext, MV_SERVICE_REASON* reason) override;
    MV_SERVICE_RESULT ReadSentImage(uint64_t bufferIndex, MV_DATA_RECEIVER receiver,
                                    void* receiverContext, MV_SERVICE_REASON* reason) override;

private:
    ServiceContext context;
    FeatureService features;
    Subscriptions subscriptions;
    FrameService frames;
    SettingsService settings;
};

} // namespace pyxen
