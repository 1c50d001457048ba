// cleanup_thread.cpp - winding up an asynchronous single snap
#include "acquisition/acquisition.h"
#include "acquisition/busy_marks.h"
#include "platform/sleep.h"
#include "sdk/sdk_error.h"

#include <cstddef>
#include <utility>

namespace pyxen {

namespace {

constexpr std::size_t kStackSize = 16384;

} // namespace

void Acquisition::StartCleanupThread(AcquisitionState::Moment seen) {
    const platform::MutexLock lock(cleanupMutex);
    // The event is checked under the mutex: whoever sets it and then joins can rely on it that no
    // other thread is started.
    // A thread that is held already is not replaced, which would mean waiting for it.
    if (stopEvent->IsSet() || cleanupThread.IsJoinable() || !state.WindUp(seen)) {
        return;
    }
    cleanupThread = platform::Thread::Start(&SingleSnapCleanupThreadProc, this, kStackSize);
    if (!cleanupThread.IsJoinable()) {
        state.WindUpFailed();
    }
}

void Acquisition::JoinCleanupThread() {
    platform::Thread ending;
    {
        const platform::MutexLock lock(cleanupMutex);
        ending = std::move(cleanupThread);
    }
    ending.Join();
}

void Acquisition::SingleSnapCleanupThreadProc(void* acquisition) {
    static_cast<Acquisition*>(acquisition)->WindUpSingleSnap();
}

void Acquisition::WindUpSingleSnap() {
    const PxnHandle camera = cameraHandle;
    {
        const BusyMarks marks(host);
        if (const PxnError result = api.PxnFeatureCommandRun(camera, "AcquisitionStop")) {
            ReportSdkError(
                "CMivoraKVNPyxenClass::SingleSnapCleanupThreadProc: Sending acquisition stop command to camera failed",
                result, log);
        } else {
            log.Information(
                "CMivoraKVNPyxenClass::SingleSnapCleanupThreadProc: successfully stopped camera acquisition");
        }
        if (const PxnError result = api.PxnCaptureEnd(camera)) {
            // Compatibility: support searches for the callback's tag here.
            ReportSdkError("CMivoraKVNPyxenClass::FrameCallback: Calling PxnCaptureEnd failed",
                           result, log);
        } else {
            log.Information(
                "CMivoraKVNPyxenClass::SingleSnapCleanupThreadProc: PxnCaptureEnd successful");
        }
        if (const PxnError result = RevokeAll()) {
            ReportSdkError(
                "CMivoraKVNPyxenClass::SingleSnapCleanupThreadProc: Calling PxnRevokeAll failed",
                result, log);
        } else {
            log.Information(
                "CMivoraKVNPyxenClass::SingleSnapCleanupThreadProc: PxnRevokeAll successful");
        }
        platform::SleepMs(kSettlingPauseMs);
    }
    state.Finish();
}

} // namespace pyxen
