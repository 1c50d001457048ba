// snap_modes.cpp - the three ways to acquire
#include "acquisition/acquisition.h"
#include "acquisition/hand_over_scope.h"
#include "acquisition/undo_lists.h"
#include "sdk/sdk_error.h"

namespace pyxen {

MV_ERRCODE Acquisition::SnapContinuous() {
    for (std::uint64_t index = 0; index < frames.Size(); ++index) {
        if (Announce(frames[index]) != PxnErrSuccess) {
            // Compatibility: nothing is logged and the announcements go on. A host learns of the
            // failure when the SDK refuses to queue the frame.
            continue;
        }
        if (!log) {
            // Compatibility: without a sink the first success counts as a failure.
            Undo(undo::kContinuousWithoutSink);
            return MV_ACQUISITION_FAILED;
        }
        log.Information("CMivoraKVNPyxenClass::Snap: Announced buffer %I64u", index);
    }
    if (firstQueueThenSnap) {
        if (const MV_ERRCODE result = QueueAllBuffers()) {
            Undo(undo::kContinuousQueueFirst);
            return result;
        }
    }
    if (const PxnError result = api.PxnCaptureStart(cameraHandle)) {
        ReportSdkError("CMivoraKVNPyxenClass::Snap: PxnCaptureStart failed", result, log);
        Undo(undo::kContinuousCaptureStart);
        // Compatibility: success, and the number stays, unlike the single snaps. Hosts end this
        // with StopSnap.
        return MV_OK;
    }
    log.Information("CMivoraKVNPyxenClass::Snap: PxnCaptureStart successful");
    if (!firstQueueThenSnap) {
        if (const MV_ERRCODE result = QueueAllBuffers()) {
            Undo(undo::kContinuousQueueLast);
            return result;
        }
    }
    return StartCamera();
}

MV_ERRCODE Acquisition::SnapAsynchronous() {
    if (const PxnError result = Announce(frames[0])) {
        ReportSdkError("CMivoraKVNPyxenClass::Snap: PxnFrameAnnounce failed", result, log);
        return MV_ACQUISITION_FAILED;
    }
    log.Information("CMivoraKVNPyxenClass::Snap: Announced buffer 0");
    if (firstQueueThenSnap && !QueueAsynchronous(undo::kAsynchronousQueueFirst)) {
        return MV_ACQUISITION_FAILED;
    }
    if (const PxnError result = api.PxnCaptureStart(cameraHandle)) {
        Undo(undo::kAsynchronousCaptureStart);
        ReportSdkError("CMivoraKVNPyxenClass::Snap: PxnCaptureStart failed", result, log);
        return MV_ACQUISITION_FAILED;
    }
    log.Information("CMivoraKVNPyxenClass::Snap: PxnCaptureStart successful");
    if (!firstQueueThenSnap && !QueueAsynchronous(undo::kAsynchronousQueueLast)) {
        return MV_ACQUISITION_FAILED;
    }
    return StartCamera();
}

bool Acquisition::QueueAsynchronous(UndoList steps) {
    if (const PxnError result = Queue(frames[0], &OnFrame)) {
        Undo(steps);
        ReportSdkError("CMivoraKVNPyxenClass::Snap: PxnCaptureFrameQueue failed", result, log);
        return false;
    }
    log.Information("CMivoraKVNPyxenClass::Snap: queued one buffer");
    return true;
}

MV_ERRCODE Acquisition::SnapSynchronous() {
    return QueueSynchronous() ? TakeSynchronous() : MV_ACQUISITION_FAILED;
}

bool Acquisition::QueueSynchronous() {
    if (const PxnError result = Announce(frames[0])) {
        ReportSdkError("CMivoraKVNPyxenClass::Snap: PxnFrameAnnounce failed", result, log);
        return false;
    }
    // Compatibility: logged before anything is queued.
    log.Information("CMivoraKVNPyxenClass::Snap: queued one buffer");
    if (const PxnError result = api.PxnCaptureStart(cameraHandle)) {
        Undo(undo::kSynchronousCaptureStart);
        ReportSdkError("CMivoraKVNPyxenClass::Snap: PxnCaptureStart failed", result, log);
        return false;
    }
    log.Information("CMivoraKVNPyxenClass::Snap: PxnCaptureStart successful");
    if (const PxnError result = Queue(frames[0], nullptr)) {
        Undo(undo::kSynchronousQueue);
        // Compatibility: support searches for the entry's name with its words transposed.
        ReportSdkError("CMivoraKVNPyxenClass::Snap: PxnCaptureQueueFrame failed", result, log);
        return false;
    }
    if (const PxnError result = api.PxnFeatureCommandRun(cameraHandle, "AcquisitionStart")) {
        ReportSdkError(
            "CMivoraKVNPyxenClass::Snap: Sending acquisition start command to camera failed",
            result, log);
        Undo(undo::kSynchronousStartCommand);
        return false;
    }
    log.Information("CMivoraKVNPyxenClass::Snap: started camera acquisition");
    return true;
}

MV_ERRCODE Acquisition::TakeSynchronous() {
    MV_ERRCODE outcome = MV_OK;
    FrameRecord& record = frames[0];
    if (const PxnError result =
            api.PxnCaptureFrameWait(cameraHandle, record.Frame(), platform::kInfinite)) {
        ReportSdkError("CMivoraKVNPyxenClass::Snap: PxnCaptureFrameWait failed", result, log);
        outcome = MV_ACQUISITION_FAILED;
    } else {
        record.Hold().Return();
        log.Information("CMivoraKVNPyxenClass::Snap: snapped one frame");
        framesReceived = 1;
        const HandOverScope scope(*this);
        NoteFrame(*record.Frame(), &record,
                  record.Frame()->receiveStatus == PxnFrameStatusComplete && !record.IsConverted());
        // Compatibility: the image is handed over as the camera delivered it.
        host.HandOver(0, false);
    }
    if (const PxnError result = api.PxnFeatureCommandRun(cameraHandle, "AcquisitionStop")) {
        ReportSdkError(
            "CMivoraKVNPyxenClass::Snap: Sending acquisition stop command to camera failed", result,
            log);
    } else {
        log.Information("CMivoraKVNPyxenClass::Snap: successfully stopped camera acquisition");
    }
    // Compatibility: the frame stays announced.
    api.PxnCaptureEnd(cameraHandle);
    return outcome;
}

} // namespace pyxen
