// Opening cameras and moving frames.

#include "pxnc/simulator/callback_scope.h"
#include "pxnc/simulator/sdk.h"

using namespace pxsim;

namespace {

enum class OnVanished {
    kAnswer, // -4 at once
    kRun, // do it all the same, then answer -4: the host must not be left with a callback running
};

// Finds the engine that `handle` stands for and runs `action(engine, target)`.
template <class Action>
PxnError OnEngine(const char* entry, PxnHandle handle, OnVanished whenVanished,
                  Action action) noexcept {
    return Call(entry, [&](Simulator& simulator) -> PxnError {
        HandleTarget target;
        if (!simulator.Handles().Find(handle, target) || target.stream == nullptr) {
            return PxnErrBadHandle;
        }
        if (target.vanished) {
            if (whenVanished == OnVanished::kRun) {
                action(target.stream->Engine(), target);
            }
            return PxnErrBadHandle;
        }
        if (!target.writable) {
            return PxnErrInvalidAccess;
        }
        return action(target.stream->Engine(), target);
    });
}

PxnError ChangeCapture(const char* entry, PxnHandle handle, OnVanished whenVanished,
                       PxnError (AcquisitionEngine::*change)()) {
    const PxnError answer =
        OnEngine(entry, handle, whenVanished,
                 [change](AcquisitionEngine& engine, const HandleTarget& target) {
                     const PxnError result = (engine.*change)();
                     target.camera->OnStreamingChanged();
                     return result;
                 });
    TellFirst();
    return answer;
}

} // namespace

PxnError PXN_CALL PxnCameraOpen(const char* id, uint32_t accessMode, PxnHandle* camera) {
    return Call(__func__, [&](Simulator& simulator) -> PxnError {
        if (id == nullptr || camera == nullptr) {
            return PxnErrBadParameter;
        }
        if (accessMode != PxnAccessModeFull && accessMode != PxnAccessModeRead) {
            return PxnErrInvalidAccess;
        }
        if (InsideFrameCallback()) {
            return PxnErrInvalidCall;
        }
        Camera* found = simulator.FindCamera(id);
        return found == nullptr ? PxnErrNotFound : found->Open(accessMode, camera);
    });
}

PxnError PXN_CALL PxnCameraClose(PxnHandle camera) {
    return Call(__func__, [&](Simulator& simulator) -> PxnError {
        HandleTarget target;
        if (!simulator.Handles().Find(camera, target) || !target.isCamera) {
            return PxnErrBadHandle;
        }
        if (InsideFrameCallback()) {
            return PxnErrInvalidCall;
        }
        target.camera->Close(camera);
        return target.vanished ? PxnErrBadHandle : PxnErrSuccess;
    });
}

PxnError PXN_CALL PxnPayloadSizeGet(PxnHandle handle, uint32_t* payloadSize) {
    return CallOn(__func__, handle, [&](Simulator&, const HandleTarget& target) -> PxnError {
        if (payloadSize == nullptr) {
            return PxnErrBadParameter;
        }
        if (target.camera == nullptr) {
            return PxnErrBadHandle;
        }
        *payloadSize = static_cast<uint32_t>(target.camera->PayloadBytes());
        return PxnErrSuccess;
    });
}

PxnError PXN_CALL PxnFrameAnnounce(PxnHandle handle, const PxnFrame* frame, uint32_t size) {
    return OnEngine(__func__, handle, OnVanished::kAnswer,
                    [&](AcquisitionEngine& engine, const HandleTarget&) -> PxnError {
                        if (frame == nullptr) {
                            return PxnErrBadParameter;
                        }
                        if (size != sizeof *frame) {
                            return PxnErrStructSize;
                        }
                        return engine.Announce(frame);
                    });
}

PxnError PXN_CALL PxnFrameRevoke(PxnHandle handle, const PxnFrame* frame) {
    return OnEngine(__func__, handle, OnVanished::kRun,
                    [&](AcquisitionEngine& engine, const HandleTarget&) -> PxnError {
                        return frame == nullptr ? PxnErrBadParameter : engine.Revoke(frame);
                    });
}

PxnError PXN_CALL PxnFrameRevokeAll(PxnHandle handle) {
    return OnEngine(
        __func__, handle, OnVanished::kRun,
        [](AcquisitionEngine& engine, const HandleTarget&) { return engine.RevokeAll(); });
}

PxnError PXN_CALL PxnCaptureStart(PxnHandle handle) {
    return ChangeCapture(__func__, handle, OnVanished::kAnswer, &AcquisitionEngine::StartCapture);
}

PxnError PXN_CALL PxnCaptureEnd(PxnHandle handle) {
    return ChangeCapture(__func__, handle, OnVanished::kRun, &AcquisitionEngine::EndCapture);
}

PxnError PXN_CALL PxnCaptureFrameQueue(PxnHandle handle, const PxnFrame* frame,
                                       PxnFrameCallback callback) {
    return OnEngine(__func__, handle, OnVanished::kAnswer,
                    [&](AcquisitionEngine& engine, const HandleTarget&) -> PxnError {
                        return frame == nullptr ? PxnErrBadParameter
                                                : engine.Queue(frame, callback);
                    });
}

PxnError PXN_CALL PxnCaptureFrameWait(PxnHandle handle, const PxnFrame* frame, uint32_t timeout) {
    return OnEngine(__func__, handle, OnVanished::kAnswer,
                    [&](AcquisitionEngine& engine, const HandleTarget&) -> PxnError {
                        return frame == nullptr ? PxnErrBadParameter : engine.Wait(frame, timeout);
                    });
}

PxnError PXN_CALL PxnCaptureQueueFlush(PxnHandle handle) {
    return OnEngine(__func__, handle, OnVanished::kRun,
                    [](AcquisitionEngine& engine, const HandleTarget&) { return engine.Flush(); });
}
