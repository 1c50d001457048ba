// stop_snap.cpp - ending an acquisition
#include "acquisition/acquisition.h"
#include "acquisition/busy_marks.h"
#include "platform/sleep.h"
#include "sdk/callback_scope.h"
#include "sdk/sdk_error.h"

namespace pyxen {

void Acquisition::Stop() {
    if (CallbackScope::IsInside()) {
        // Whoever ends the acquisition on another thread may be waiting for this callback.
        if (state.IsWindingUp() || !stopMutex.TryLock()) {
            return;
        }
    } else {
        stopMutex.Lock();
        JoinCleanupThread();
    }
    const std::uint32_t mode = state.Number();
    if (mode == kContinuous || mode == kAsynchronousSingle) {
        StopRunning();
    }
    stopMutex.Unlock();
}

void Acquisition::StopRunning() {
    host.ChooseDialog();
    {
        const BusyMarks marks(host);
        state.BeginStop();
        if (stopEvent) {
            stopEvent->Set();
        }
        {
            // A callback that holds it only queues its frame.
            const platform::MutexLock lock(requeueMutex);
            StopCamera();
        }
        platform::SleepMs(kSettlingPauseMs);
    }
    state.Finish();
}

void Acquisition::StopCamera() {
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
    if (const PxnError result = Flush()) {
        ReportSdkError("CMivoraKVNPyxenClass::StopSnap: PxnCaptureQueueFlush failed", result, log);
    } else {
        log.Information("CMivoraKVNPyxenClass::StopSnap: successfully flushed queue");
    }
    if (const PxnError result = RevokeAll()) {
        ReportSdkError("CMivoraKVNPyxenClass::StopSnap: PxnFrameRevokeAll failed", result, log);
    } else {
        log.Information("CMivoraKVNPyxenClass::StopSnap: successfully executed PxnFrameRevokeAll");
    }
}

} // namespace pyxen
