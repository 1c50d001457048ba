// open_camera.h - the camera that is open: its handle, its modules and what applies to them
#pragma once

#include "grabber/camera_caches.h"
#include "sdk/camera_features.h"
#include "sdk/sdk_library.h"
#include "sync/feature_syncher.h"
#include "sync/sync_engine.h"

#include <atomic>
#include <memory>

class CIniFile;

namespace pyxen {

class Acquisition;
class CameraIdentity;

/// Opens a camera, keeps what belongs to it while it is open, and closes it.
///
/// Open, Close and Clear run on one thread at a time, and nothing else of the camera meanwhile. Any
/// thread may ask for the handle. Holds no lock while it calls the SDK.
class OpenCamera final : public ICameraFeatures {
public:
    /// `access` and `cameraIdentity` must outlive the object.
    OpenCamera(CPyxenAPIAccess& access, CameraIdentity& cameraIdentity, Logger sink);

    CPyxenAPIAccess& Api() override { return api; }
    PxnHandle CameraHandle() const override { return cameraHandle; }
    const std::atomic<PxnHandle>& Handle() const { return cameraHandle; }
    Logger Log() const override { return log; }

    /// Opens the camera of `record`, refreshes the record, fills the caches, tunes serial link and
    /// packet size and applies the configuration for the camera's transport layer, if `ini` (may be
    /// null) has one, which decides how `acquisition` starts. False when the SDK refuses to open
    /// the camera or out of memory.
    bool Open(PxnCameraInfo& record, const CIniFile* ini, const char* configDirectory,
              Acquisition& acquisition);
    /// Closes the camera, whose frames are those of `acquisition`. The SDK's refusal is logged, and
    /// the camera counts as closed.
    void Close(Acquisition& acquisition);
    /// Empties the caches and the synchronisation rules.
    void Clear();

    CameraCaches& Caches() { return caches; }
    SyncEngine& Sync() { return syncEngine; }
    const FeatureSyncher& SyncRules() const { return featureSyncher; }

private:
    bool MakeSpareNote();
    /// Whether an opening that returned `result` has left a camera open that nobody has.
    bool IsLeftOpen(PxnHandle handle, PxnError result) const;
    void RefreshRecord(PxnCameraInfo& record);
    void FillCaches(const PxnCameraInfo& record);
    /// Returns whether frames are queued before the capture is started.
    bool ApplyTransportLayerConfig(const CIniFile* ini, const char* configDirectory);

    CPyxenAPIAccess& api;
    CameraIdentity& identity;
    const Logger log;
    std::atomic<PxnHandle> cameraHandle{nullptr};
    std::unique_ptr<CameraNote> openNote;  // with that handle, or null
    std::unique_ptr<CameraNote> spareNote; // for the next one, or null
    CameraCaches caches;
    FeatureSyncher featureSyncher;
    SyncEngine syncEngine;
};

} // namespace pyxen
