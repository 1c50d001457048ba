// snap.cpp - starting an acquisition
#include "acquisition/acquisition_mode.h"
#include "acquisition/busy_marks.h"
#include "grabber/mivora_gfx_mode_kvn_pyxen.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "sdk/logger.h"
#include "sdk/sdk_error.h"

MV_ERRCODE CMivoraKVNPyxenClass::Snap(uint32_t mode) {
    if (!initialized) {
        return MV_NOT_INITIALISED;
    }
    const CMivoraCamera* const camera = GetActCamera();
    if (!camera) {
        return MV_NO_CAMERA;
    }
    if (!cameraOpen) {
        return MV_CAMERA_NOT_OPEN;
    }
    if (!ActMode()) {
        return MV_NO_VIDEO_MODE;
    }
    if (!buffersPrepared) {
        return MV_BUFFERS_NOT_PREPARED;
    }
    // A single snap that is being wound up counts as running until its thread has ended.
    JoinCleanupThread();
    if (acquisitionState != kIdle) {
        return MV_BUSY;
    }
    // Without the stop event nothing could be stopped, so it is asked for with the host's two.
    if (!acquisitionEvents[0] || !acquisitionEvents[1] || !stopEvent) {
        return MV_ACQUISITION_FAILED;
    }
    servedByFeatureControl = camera->GetCamCntrlDlgIndex() == kFeatureControlDialogIndex;
    const BusyMarks marks(DialogToMark());
    for (const auto& event : acquisitionEvents) {
        event->Reset();
    }
    if (mode < kContinuous || mode > kLastSynchronousSingle) {
        return MV_BAD_VALUE;
    }
    if (mode != kContinuous && frameRecords.empty()) {
        return MV_BUFFERS_NOT_PREPARED;
    }
    if (framesKept) {
        // The SDK would not take a frame that it has already.
        TakeFramesBack();
    }
    if (mode == kContinuous) {
        return SnapContinuous();
    }
    return mode == kAsynchronousSingle ? SnapAsynchronous() : SnapSynchronous(mode);
}

ICamCntrlDialog* CMivoraKVNPyxenClass::DialogToMark() const {
    return servedByFeatureControl ? GetCamCntrlDialogObject() : nullptr;
}

MV_ERRCODE CMivoraKVNPyxenClass::QueueAllBuffers() {
    const Logger log(GetLogSink());
    const PxnHandle camera = cameraHandle;
    for (uint64_t index = 0; index < frameRecords.size(); ++index) {
        if (const PxnError result =
                api.PxnCaptureFrameQueue(camera, frameRecords[index]->Frame(), &OnFrame)) {
            ReportSdkError("CMivoraKVNPyxenClass::QueueAllBuffers: PxnCaptureFrameQueue failed",
                           result, log);
            return MV_ACQUISITION_FAILED;
        }
        log.Information("CMivoraKVNPyxenClass::QueueAllBuffers: Queued buffer %I64u", index);
    }
    return MV_OK;
}

MV_ERRCODE CMivoraKVNPyxenClass::StartCamera() {
    const Logger log(GetLogSink());
    const PxnHandle camera = cameraHandle;
    if (const PxnError result = api.PxnFeatureCommandRun(camera, "AcquisitionStart")) {
        ReportSdkError(
            "CMivoraKVNPyxenClass::Snap: Sending acquisition start command to camera failed",
            result, log);
        api.PxnCaptureEnd(camera);
        api.PxnCaptureQueueFlush(camera);
        api.PxnFrameRevokeAll(camera);
        return MV_ACQUISITION_FAILED;
    }
    log.Information("CMivoraKVNPyxenClass::Snap: started camera acquisition");
    return MV_OK;
}
