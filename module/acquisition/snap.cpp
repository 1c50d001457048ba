// snap.cpp - starting an acquisition
#include "acquisition/acquisition.h"
#include "acquisition/busy_marks.h"
#include "acquisition/hand_over_scope.h"
#include "sdk/callback_scope.h"
#include "sdk/sdk_error.h"

namespace pyxen {

bool Acquisition::IsInside() const {
    return CallbackScope::IsInside() || HandOverScope::IsInside(*this);
}

MV_ERRCODE Acquisition::Snap(std::uint32_t mode) {
    if (!buffersPrepared) {
        return MV_BUFFERS_NOT_PREPARED;
    }
    // A single snap that is being wound up counts as running until its thread has ended. Inside a
    // callback that thread is not waited for: it may be waiting for the callback.
    if (!CallbackScope::IsInside()) {
        JoinCleanupThread();
    }
    if (state.Number() != kIdle) {
        return MV_BUSY;
    }
    // Without the stop event nothing could be stopped, so it is required like the host's two.
    if (!acquisitionEvents[0] || !acquisitionEvents[1] || !stopEvent) {
        return MV_ACQUISITION_FAILED;
    }
    host.ChooseDialog();
    const BusyMarks marks(host);
    for (const auto& event : acquisitionEvents) {
        event->Reset();
    }
    if (mode < kContinuous || mode > kLastSynchronousSingle) {
        return MV_BAD_VALUE;
    }
    if (mode != kContinuous && frames.Size() == 0) {
        return MV_BUFFERS_NOT_PREPARED;
    }
    if (frames.IsWithSdk()) {
        // The SDK would not take a frame that it has already.
        TakeFramesBack();
    }
    if (!state.Start(mode)) {
        return MV_BUSY;
    }
    framesOfAnyStatus = 0;
    if (mode >= kFirstSynchronousSingle) {
        const MV_ERRCODE result = SnapSynchronous();
        state.Finish();
        return result;
    }
    stopEvent->Reset();
    framesReceived = 0;
    const MV_ERRCODE result = mode == kContinuous ? SnapContinuous() : SnapAsynchronous();
    // Also after a failure: the number stays until StopSnap.
    state.Started();
    return result;
}

MV_ERRCODE Acquisition::QueueAllBuffers() {
    for (uint64_t index = 0; index < frames.Size(); ++index) {
        if (const PxnError result = Queue(frames[index], &OnFrame)) {
            ReportSdkError("CMivoraKVNPyxenClass::QueueAllBuffers: PxnCaptureFrameQueue failed",
                           result, log);
            return MV_ACQUISITION_FAILED;
        }
        log.Information("CMivoraKVNPyxenClass::QueueAllBuffers: Queued buffer %I64u", index);
    }
    return MV_OK;
}

MV_ERRCODE Acquisition::StartCamera() {
    if (const PxnError result = api.PxnFeatureCommandRun(cameraHandle, "AcquisitionStart")) {
        ReportSdkError(
            "CMivoraKVNPyxenClass::Snap: Sending acquisition start command to camera failed",
            result, log);
        Undo(undo::kStartCommand);
        return MV_ACQUISITION_FAILED;
    }
    log.Information("CMivoraKVNPyxenClass::Snap: started camera acquisition");
    return MV_OK;
}

} // namespace pyxen
