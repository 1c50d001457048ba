// cleanup_thread.cpp - winding up an asynchronous single snap
#include "acquisition/acquisition_mode.h"
#include "acquisition/busy_marks.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/sleep.h"
#include "sdk/logger.h"
#include "sdk/sdk_error.h"

#include <cstddef>
#include <utility>

namespace {

constexpr std::size_t kStackSize = 16384;

} // namespace

void CMivoraKVNPyxenClass::StartCleanupThread() {
    const platform::MutexLock lock(cleanupMutex);
    // Asked for under the mutex, so that whoever sets the event and then joins knows that no other
    // thread comes after. A thread that is held already winds up this snap as well; to replace it
    // would mean waiting for it.
    if (stopEvent->IsSet() || cleanupThread.IsJoinable()) {
        return;
    }
    cleanupThread = platform::Thread::Start(&SingleSnapCleanupThreadProc, this, kStackSize);
}

void CMivoraKVNPyxenClass::JoinCleanupThread() {
    platform::Thread ending;
    {
        const platform::MutexLock lock(cleanupMutex);
        ending = std::move(cleanupThread);
    }
    ending.Join();
}

void CMivoraKVNPyxenClass::SingleSnapCleanupThreadProc(void* grabber) {
    static_cast<CMivoraKVNPyxenClass*>(grabber)->WindUpSingleSnap();
}

void CMivoraKVNPyxenClass::WindUpSingleSnap() {
    const Logger log(GetLogSink());
    const PxnHandle camera = cameraHandle;
    {
        const BusyMarks marks(DialogToMark());
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
        if (const PxnError result = api.PxnFrameRevokeAll(camera)) {
            ReportSdkError(
                "CMivoraKVNPyxenClass::SingleSnapCleanupThreadProc: Calling PxnRevokeAll failed",
                result, log);
        } else {
            log.Information(
                "CMivoraKVNPyxenClass::SingleSnapCleanupThreadProc: PxnRevokeAll successful");
        }
        platform::SleepMs(kSettlingPauseMs);
    }
    acquisitionState = kIdle;
}
