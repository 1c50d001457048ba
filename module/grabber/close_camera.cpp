// close_camera.cpp - closing the open camera
#include "grabber/mivora_camera_kvn_pyxen.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "sdk/logger.h"
#include "sdk/sdk_error.h"

MV_ERRCODE CMivoraKVNPyxenClass::CloseActCamera() {
    const Logger log(GetLogSink());
    log.Information("CMivoraKVNPyxenClass::CloseActCamera");
    if (const PxnHandle camera = cameraHandle) {
        KeepTimingForSaving();
        if (const PxnError result = api.PxnCameraClose(camera)) {
            // Compatibility: support searches for this tag, which names another class.
            ReportSdkError("CMivoraKVNqxAPIClass::CloseActCamera", result, log);
        }
        if (CMivoraCameraKVNPyxen* const node = ActCameraNode()) {
            node->Record().streamCount = 0;
            node->Record().localDeviceHandle = nullptr;
        }
        cameraHandle = nullptr;
    } else {
        cameraOpen = false;
    }
    featureSyncher.Clear();
    ClearCameraCaches();
    buffersPrepared = false;
    frameLeftQueued = false;
    framesKept = false;
    if (!cameraOpen) {
        return MV_CAMERA_NOT_OPEN;
    }
    const MV_ERRCODE result = CPyxenGrabber::CloseActCamera();
    cameraOpen = false;
    return result;
}

void CMivoraKVNPyxenClass::KeepTimingForSaving() {
    uint32_t value = 0;
    if (GetExposureTime(&value)) {
        SetSavedExposure(value);
    }
    if (GetFrameInterval(&value)) {
        SetSavedInterval(value);
    }
}

void CMivoraKVNPyxenClass::ClearCameraCaches() {
    for (FeatureCache& cache : cameraCaches) {
        cache.Clear();
    }
}
