// open_camera.cpp - opening the active camera
#include "grabber/mivora_camera_kvn_pyxen.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "sdk/logger.h"
#include "sdk/sdk_error.h"

MV_ERRCODE CMivoraKVNPyxenClass::OpenActCamera() {
    const Logger log(GetLogSink());
    log.Information("CMivoraKVNPyxenClass::OpenActCamera");
    if (!initialized) {
        return MV_NOT_INITIALISED;
    }
    CMivoraCameraKVNPyxen* const camera = ActCameraNode();
    if (!camera) {
        return MV_NO_CAMERA;
    }
    PxnCameraInfo& record = camera->Record();
    PxnHandle handle = nullptr;
    if (const PxnError result =
            api.PxnCameraOpen(record.cameraIdExtended, PxnAccessModeFull, &handle)) {
        ReportSdkError("CMivoraKVNPyxenClass::OpenActCamera", result, log);
        return MV_REFUSED;
    }
    cameraHandle = handle;
    // Before the next call of the SDK, so that no event of this camera is taken for another's.
    identity.Open(record.cameraIdExtended);
    log.Information("Successfully opened camera! Handle = %p", handle);
    api.PxnCameraInfoQueryByHandle(handle, &record, sizeof record);
    identity.Open(record.cameraIdExtended);

    // Compatibility: hosts take the camera for open even without a feature list, and no line of its
    // own is logged then.
    if (cameraCaches[kCameraCache].Init("Camera", &api, handle, log)) {
        SetOptimumSerialPortBaudRate();
        FillModuleCaches(record);
        AdjustPacketSize();
        LoadTransportLayerConfig();
        log.Information("CMivoraKVNPyxenClass::OpenActCamera: Using snap start strategy: %s",
                        firstQueueThenSnap ? "First queue frames then start snap"
                                           : "First start snap then queue frames");
    }
    cameraOpen = true;
    UpdateCamCntrlDialogs(kMvUpdateAll);
    return MV_OK;
}

void CMivoraKVNPyxenClass::FillModuleCaches(PxnCameraInfo& record) {
    const Logger log(GetLogSink());
    cameraCaches[kInterfaceCache].Init("Interface", &api, record.interfaceHandle, log);
    cameraCaches[kLocalDeviceCache].Init("Localdevice", &api, record.localDeviceHandle, log);
    cameraCaches[kTransportLayerCache].Init("Transportlayer", &api, record.transportLayerHandle,
                                            log);
    // Listed a second time, since the features may be others now that the serial link is tuned.
    cameraCaches[kCameraCache].Init("Camera", &api, cameraHandle, log);
    for (uint32_t stream = 0; stream < record.streamCount; ++stream) {
        if (stream == 0) {
            cameraCaches[kStreamCache].Init("Stream0", &api, record.streamHandles[0], log);
        } else {
            log.Error("Todo: Currently only one stream supported...");
        }
    }
}

void CMivoraKVNPyxenClass::AdjustPacketSize() {
    constexpr const char* kCommand = "GVSPAdjustPacketSize";
    const Logger log(GetLogSink());
    const FeatureCache& cache = cameraCaches[kStreamCache];
    const PxnHandle stream = cache.GetModuleName() ? cache.GetHandle() : nullptr;
    log.Information("CMivoraKVNPyxenClass::OpenActCamera: Executing GVSP Packet size adjustment");
    if (const PxnError result = api.PxnFeatureCommandRun(stream, kCommand)) {
        ReportSdkError(
            "CMivoraKVNPyxenClass::OpenActCamera: Failed to execute GVSP packet size adjustment",
            result, log);
        return;
    }
    // Neither a pause nor a limit is intended: the SDK ends the wait, with an error if it must.
    for (;;) {
        PxnBool done = 0;
        const PxnError result = api.PxnFeatureCommandIsDone(stream, kCommand, &done);
        if (result == PxnErrNotFound) {
            return;
        }
        if (result != PxnErrSuccess) {
            ReportSdkError(
                "CMivoraKVNPyxenClass::OpenActCamera: Failed to wait for completion of GVSP packet size adjustment",
                result, log);
            return;
        }
        if (done) {
            log.Information(
                "CMivoraKVNPyxenClass::OpenActCamera: GVSP Packet size adjustment completed.");
            return;
        }
    }
}
