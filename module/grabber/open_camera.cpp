// open_camera.cpp - the camera that is open: its handle, its modules and what applies to them
#include "grabber/open_camera.h"

#include "acquisition/acquisition.h"
#include "grabber/camera_identity.h"
#include "grabber/packet_size.h"
#include "grabber/serial_baud_rate.h"
#include "grabber/transport_layer_config.h"
#include "platform/file_system.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"

#include <string>
#include <utility>

namespace pyxen {

OpenCamera::OpenCamera(CPyxenAPIAccess& access, CameraIdentity& cameraIdentity, Logger sink)
    : api(access),
      identity(cameraIdentity),
      log(sink),
      spareNote(std::make_unique<CameraNote>()),
      syncEngine(access, featureSyncher, caches, sink) {}

bool OpenCamera::Open(PxnCameraInfo& record, const CIniFile* ini, const char* configDirectory,
                      Acquisition& acquisition) {
    // There from the begin, so that the camera can be remembered when the SDK refuses to close it.
    if (!spareNote && !MakeSpareNote()) {
        return false;
    }
    CloseRememberedCameras(api);
    PxnHandle handle = nullptr;
    if (const PxnError result =
            api.PxnCameraOpen(record.cameraIdExtended, PxnAccessModeFull, &handle)) {
        ReportSdkError("CMivoraKVNPyxenClass::OpenActCamera", result, log);
        if (IsLeftOpen(handle, result)) {
            spareNote->library = api.GetLibraryHandle();
            spareNote->handle = handle;
            RememberUnclosedCamera(std::move(spareNote));
        }
        return false;
    }
    ForgetReopenedCamera(api, handle);
    if (openNote && openNote->handle != handle) {
        // The host has not closed the former one.
        acquisition.LeaveCamera(std::move(openNote));
    }
    openNote = std::move(spareNote);
    openNote->library = api.GetLibraryHandle();
    openNote->handle = handle;
    openNote->modules = {handle};
    cameraHandle = handle;
    // Before the next call of the SDK, so that no event of this camera is taken for another's.
    identity.Open(record.cameraIdExtended);
    log.Information("Successfully opened camera! Handle = %p", handle);
    RefreshRecord(record);
    identity.Open(record.cameraIdExtended);
    openNote->modules = {handle, record.localDeviceHandle,
                         record.streamCount > 0 ? record.streamHandles[0] : nullptr};

    // Compatibility: hosts take the camera for open even without a feature list, and no line of its
    // own is logged then.
    if (caches[kCameraCache].Init("Camera", &api, handle, log)) {
        SetOptimumSerialPortBaudRate(api, record.localDeviceHandle, handle, log);
        FillCaches(record);
        const FeatureCache& stream = caches[kStreamCache];
        AdjustPacketSize(api, stream.GetModuleName() ? stream.GetHandle() : nullptr, log);
        acquisition.UseStrategy(ApplyTransportLayerConfig(ini, configDirectory));
        log.Information("CMivoraKVNPyxenClass::OpenActCamera: Using snap start strategy: %s",
                        acquisition.QueuesFirst() ? "First queue frames then start snap"
                                                  : "First start snap then queue frames");
    }
    return true;
}

bool OpenCamera::IsLeftOpen(PxnHandle handle, PxnError result) const {
    const bool isAnothers = result == PxnErrInUse || result == PxnErrInvalidAccess ||
                            (openNote && openNote->handle == handle);
    return handle && !isAnothers;
}

void OpenCamera::RefreshRecord(PxnCameraInfo& record) {
    PxnCameraInfo refreshed{};
    if (api.PxnCameraInfoQueryByHandle(cameraHandle, &refreshed, sizeof refreshed) ==
        PxnErrSuccess) {
        record = refreshed;
    }
    if (!record.streamHandles) {
        record.streamCount = 0;
    }
}

void OpenCamera::FillCaches(const PxnCameraInfo& record) {
    caches[kInterfaceCache].Init("Interface", &api, record.interfaceHandle, log);
    caches[kLocalDeviceCache].Init("Localdevice", &api, record.localDeviceHandle, log);
    caches[kTransportLayerCache].Init("Transportlayer", &api, record.transportLayerHandle, log);
    // Listed a second time, since the features may be others now that the serial link is tuned.
    caches[kCameraCache].Init("Camera", &api, cameraHandle, log);
    for (std::uint32_t stream = 0; stream < record.streamCount; ++stream) {
        if (stream == 0) {
            caches[kStreamCache].Init("Stream0", &api, record.streamHandles[0], log);
        } else {
            log.Error("Todo: Currently only one stream supported...");
        }
    }
}

bool OpenCamera::ApplyTransportLayerConfig(const CIniFile* ini, const char* configDirectory) {
    bool firstQueueThenSnap = false;
    NoThrow(false, [&] {
        const TransportLayerConfig config(api, caches[kInterfaceCache].GetHandle(),
                                          caches[kTransportLayerCache].GetHandle(), log);
        std::string syncFile;
        if (!config.GetFirstQueueThenSnap(ini, firstQueueThenSnap, syncFile)) {
            log.Information(
                "CMivoraKVNPyxenClass::OpenActCamera: No TL specific configuration found for%s",
                config.GetShownValues().c_str());
        }
        if (syncFile.empty()) {
            log.Information(
                "CMivoraKVNPyxenClass::OpenActCamera: No feature synchronization file found.");
            return true;
        }
        const std::string directory = configDirectory;
        const std::string path =
            directory.empty() ? syncFile : directory + platform::kPathSeparator + syncFile;
        if (featureSyncher.Init(path.c_str(), log)) {
            log.Information("CMivoraKVNPyxenClass::OpenActCamera: Successfully loaded %s.",
                            path.c_str());
        }
        // Compatibility: what a faulty file declares before its fault applies all the same.
        syncEngine.SyncModuleFeatures(&caches[kCameraCache], true);
        return true;
    });
    return firstQueueThenSnap;
}

void OpenCamera::Close(Acquisition& acquisition) {
    if (const PxnError result = acquisition.CloseCamera(openNote)) {
        // Compatibility: support searches for this tag, which names another class.
        ReportSdkError("CMivoraKVNqxAPIClass::CloseActCamera", result, log);
    } else {
        ForgetRegistrations(api, *openNote);
    }
    cameraHandle = nullptr;
    spareNote = std::move(openNote);
}

bool OpenCamera::MakeSpareNote() {
    return NoThrow(false, [this] {
        spareNote = std::make_unique<CameraNote>();
        return true;
    });
}

void OpenCamera::Clear() {
    featureSyncher.Clear();
    caches.Clear();
}

} // namespace pyxen
