// stop_snap.cpp - ending an acquisition
#include "acquisition/acquisition_mode.h"
#include "acquisition/busy_marks.h"
#include "acquisition/frame_callback_scope.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/sleep.h"
#include "sdk/logger.h"
#include "sdk/sdk_error.h"

MV_ERRCODE CMivoraKVNPyxenClass::StopSnap() {
    if (!initialized) {
        return MV_NOT_INITIALISED;
    }
    JoinCleanupThread();
    const uint32_t mode = acquisitionState;
    if (mode != kContinuous && mode != kAsynchronousSingle) {
        return MV_OK;
    }
    const CMivoraCamera* const camera = GetActCamera();
    servedByFeatureControl = camera && camera->GetCamCntrlDlgIndex() == kFeatureControlDialogIndex;
    {
        const BusyMarks marks(DialogToMark());
        if (stopEvent) {
            stopEvent->Set();
        }
        if (!FrameCallbackScope::IsInside(this)) {
            requeueMutex.Lock();
        } else if (!requeueMutex.TryLock()) {
            // Another thread is stopping already, and the SDK lets it wait for this callback.
            return MV_OK;
        }
        StopCamera();
        requeueMutex.Unlock();
        platform::SleepMs(kSettlingPauseMs);
    }
    acquisitionState = kIdle;
    return MV_OK;
}

void CMivoraKVNPyxenClass::StopCamera() {
    const Logger log(GetLogSink());
    const PxnHandle camera = cameraHandle;
    if (const PxnError result = api.PxnFeatureCommandRun(camera, "AcquisitionStop")) {
        ReportSdkError(
            "CMivoraKVNPyxenClass::StopSnap: Sending acquisition stop command to camera failed",
            result, log);
    } else {
        log.Information("CMivoraKVNPyxenClass::StopSnap: successfully stopped camera acquisition");
    }
    if (const PxnError result = api.PxnCaptureEnd(camera)) {
        ReportSdkError("CMivoraKVNPyxenClass::StopSnap: PxnCaptureEnd failed", result, log);
    } else {
        log.Information("CMivoraKVNPyxenClass::StopSnap: successfully executed PxnCaptureEnd");
    }
    const PxnError flushed = api.PxnCaptureQueueFlush(camera);
    if (flushed != PxnErrSuccess) {
        ReportSdkError("CMivoraKVNPyxenClass::StopSnap: PxnCaptureQueueFlush failed", flushed, log);
    } else {
        log.Information("CMivoraKVNPyxenClass::StopSnap: successfully flushed queue");
    }
    const PxnError revoked = api.PxnFrameRevokeAll(camera);
    if (revoked != PxnErrSuccess) {
        ReportSdkError("CMivoraKVNPyxenClass::StopSnap: PxnFrameRevokeAll failed", revoked, log);
    } else {
        log.Information("CMivoraKVNPyxenClass::StopSnap: successfully executed PxnFrameRevokeAll");
    }
    NoteKeptFrames(flushed, revoked);
}

void CMivoraKVNPyxenClass::NoteKeptFrames(PxnError flushed, PxnError revoked) {
    // Either gives all frames back; inside its own callback the SDK may refuse both.
    framesKept = flushed == PxnErrInvalidCall && revoked == PxnErrInvalidCall;
}
