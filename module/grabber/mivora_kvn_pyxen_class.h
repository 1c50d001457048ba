// mivora_kvn_pyxen_class.h - the grabber of this module
#pragma once

#include "acquisition/acquisition.h"
#include "grabber/camera_identity.h"
#include "grabber/discovery.h"
#include "grabber/open_camera.h"
#include "grabber/parameters.h"
#include "grabber/pyxen_grabber.h"
#include "grabber/sdk_session.h"
#include "platform/mutex.h"
#include "sdk/invalidation_hub.h"
#include "serial/serial_grabber.h"
#include "services/module_services.h"
#include "services/service_grabber.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class CMivoraCameraKVNPyxen;
class CMivoraGfxModeKVNPyxen;

/// Grabs from cameras that the maker's SDK reaches.
///
/// Host threads call the operations; the SDK calls InvalidationCallback and FrameCallback on its
/// own threads; an asynchronous single snap ends on a short-lived thread of this class. The host
/// does not run operations that open, close, prepare or snap at the same time as one another.
class CMivoraKVNPyxenClass final : public CPyxenGrabber,
                                   public pyxen::ISerialGrabber,
                                   private pyxen::IAcquisitionHost,
                                   private pyxen::IServiceGrabber {
public:
    explicit CMivoraKVNPyxenClass(void* moduleInstance);
    ~CMivoraKVNPyxenClass() override;

    // grabber core
    MV_ERRCODE LoadGrabberConfig() override;
    MV_ERRCODE SaveGrabberConfig() override;
    MV_ERRCODE Init() override;
    MV_ERRCODE DeInit() override;
    uint32_t IsCameraOpen() override;
    const char* GetDriverVersion() override;
    MV_ERRCODE SelectCameraDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) override;
    MV_ERRCODE RefreshCameraList() override;
    MV_ERRCODE CamCntrlDialog(MV_WINDOW parent) override;
    MV_ERRCODE GrabberConfigDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) override;
    uint32_t GetNumCmdChannelTypes() override;
    CCmdChannel* CreateCmdChannel(uint32_t type) override;
    void DeleteCmdChannel(CCmdChannel* channel) override;
    CMivoraCamera* CreateCamera() override;
    uint32_t GetNumFeatureCaches() override;
    FeatureCache* GetFeatureCache(uint32_t index) override;
    FeatureCache* GetFeatureCacheByName(const char* name) override;
    FeatureCache* GetFeatureCacheByHandle(PxnHandle handle) override;
    void InitMembers() override;
    void OnTimingFeatureChanged(PxnHandle module, const char* featureName) override;
    bool NotifyBufferImpact(bool finished) override;

    // acquisition
    MV_ERRCODE OpenActCamera() override;
    MV_ERRCODE CloseActCamera() override;
    MV_ERRCODE PrepareFrameBuffers(uint64_t count) override;
    void* GetFrameBuffer(uint64_t index) override;
    MV_ERRCODE Snap(uint32_t mode) override;
    uint32_t GetAcquisitionState() override;
    MV_ERRCODE StopSnap() override;
    void SetAcquisitionState(uint32_t state) override;
    void FrameCallback(PxnFrame* frame) override;
    void InvalidationCallback(PxnHandle handle, const char* featureName) override;

    // acquisition parameters
    MV_ERRCODE GetGrabberParamLimits(uint32_t id, uint64_t* min1, uint64_t* max1, uint64_t* min2,
                                     uint64_t* max2) override;
    MV_ERRCODE GetGrabberParam(uint32_t id, uint64_t* value1, uint64_t* value2) override;
    MV_ERRCODE SetGrabberParam(uint32_t id, uint64_t value1, uint64_t value2) override;
    void GetTimerMicroseconds(uint64_t* exposure, uint64_t* interval) override;
    void SetTimerMicroseconds(uint64_t exposure, uint64_t interval) override;
    bool GetExposureTime(uint32_t* value) override;
    bool GetFrameInterval(uint32_t* value) override;

    // synchronisation of features, see SyncEngine
    int SyncFeature(FeatureCache* source, const char* sourceName, FeatureCache* target,
                    const char* targetName, bool onlyIfDifferent) {
        return Sync().SyncFeature(source, sourceName, target, targetName, onlyIfDifferent);
    }
    int SyncModuleFeatures(FeatureCache* cache, bool onlyIfDifferent) {
        return Sync().SyncModuleFeatures(cache, onlyIfDifferent);
    }
    int SyncDependentFeatures(FeatureCache* cache, const char* featureName, bool onlyIfDifferent) {
        return Sync().SyncDependentFeatures(cache, featureName, onlyIfDifferent);
    }
    pyxen::SyncCheckResult IntFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                   int64_t value) {
        return Sync().IntFeatureCheckSyncPath(cache, name, value);
    }
    pyxen::SyncCheckResult FloatFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                     double value) {
        return Sync().FloatFeatureCheckSyncPath(cache, name, value);
    }
    pyxen::SyncCheckResult EnumFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                    const char* value) {
        return Sync().EnumFeatureCheckSyncPath(cache, name, value);
    }
    pyxen::SyncCheckResult StringFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                      const char* value) {
        return Sync().StringFeatureCheckSyncPath(cache, name, value);
    }
    pyxen::SyncCheckResult BoolFeatureCheckSyncPath(FeatureCache* cache, const char* name,
                                                    bool value) {
        return Sync().BoolFeatureCheckSyncPath(cache, name, value);
    }
    static bool IsBufferImpactingFeature(FeatureCache* cache, const char* featureName) {
        return pyxen::SyncEngine::IsBufferImpactingFeature(cache, featureName);
    }

    // for the module's own nodes, channels and dialogs
    CPyxenAPIAccess& Api() override { return session.Api(); }
    /// The open camera's handle, or null.
    PxnHandle CameraHandle() const override { return openCamera.CameraHandle(); }
    pyxen::ICameraFeatures& Features() { return openCamera; }
    FeatureCache& SystemCache() override { return session.SystemCache(); }
    pyxen::SyncEngine& Sync() { return openCamera.Sync(); }
    const FeatureSyncher& SyncRules() const override { return openCamera.SyncRules(); }
    /// Shared by buffer preparation and every serial channel.
    platform::Mutex& SerialMutex() RETURN_CAPABILITY(serialMutex) { return serialMutex; }
    bool IsInitialized() const override { return initialized; }
    /// What the module offers beside the grabber's slots.
    IMivoraModuleServices& Services() { return services; }
    /// Begun and ended by discovery_events.
    pyxen::InvalidationSubscription& DiscoverySubscription() { return discoverySubscription; }

private:
    friend struct AcquisitionInsides; // tests

    // for the services
    bool IsInsideCallback() const override;
    pyxen::Acquisition& Frames() override { return acquisition; }
    pyxen::Logger Log() const override { return GetLogSink(); }
    bool HasOpenCamera() const override { return cameraOpen; }
    pyxen::IFeatureCaches& CameraModules() override { return openCamera.Caches(); }
    CMivoraCamera* FirstListedCamera() override { return GetFirstCamera(); }

    // grabber core
    class ParameterHost;
    /// True where the SDK, or the snap of this grabber, waits for the calling thread: cameras are
    /// neither opened, closed nor listed there.
    bool IsWaitedFor() const;
    MV_ERRCODE InitOrThrow();
    MV_ERRCODE OpenLocked() REQUIRES(services.Lock());
    MV_ERRCODE BuildInternalList();
    MV_ERRCODE ChooseCamera(MV_WINDOW parent, MV_DLG_EXITCODE& ending);
    CMivoraCameraKVNPyxen* ActCameraNode();
    /// The active camera's active mode, or null.
    CMivoraGfxModeKVNPyxen* ActMode();

    // for the acquisition
    void OnFrame(PxnFrame* frame) override;
    void HandOver(uint64_t index, bool isFromCallback) override;
    void ChooseDialog() override;
    void MarkDialog(bool isChanging) override;
    MV_ERRCODE PrepareHostBuffers(uint64_t count, uint64_t& requested) override;

    std::atomic<bool> initialized{false};
    std::atomic<bool> cameraOpen{false};
    // Kept from the last snap for the cleanup thread, while the host may list its cameras anew.
    std::atomic<bool> servedByFeatureControl{false};

    // Buffer preparation and the traffic of every serial channel, so that they exclude each other.
    platform::Mutex serialMutex;

    // The parts, in the order in which they use one another. Each states its own locking rule.
    pyxen::CameraIdentity identity;
    pyxen::SdkSession session;
    pyxen::OpenCamera openCamera;
    const std::unique_ptr<ParameterHost> parameterHost;
    pyxen::Parameters parameters;
    pyxen::Discovery discovery;
    pyxen::InvalidationSubscription discoverySubscription;
    pyxen::Acquisition acquisition;
    pyxen::ModuleServices services;
};

/// Camera control dialog index of the cameras that the feature control dialog serves.
inline constexpr uint32_t kFeatureControlDialogIndex = 2;
