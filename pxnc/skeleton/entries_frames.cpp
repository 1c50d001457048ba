// entries_frames.cpp - frames, captures and chunk data
#include "pxnc/skeleton/entry.h"

using namespace skeleton;

namespace {

/// What a function does on the handle of a camera that has vanished.
enum class OnVanished {
    kRefuse,
    kRun, // gives back what it can: the host must not be left with memory that the SDK uses
};

/// Whether a function waits for a running callback, so that it is refused inside one.
enum class Waiting { kNever, kForCallbacks };

/// `frameSize` is what the host takes for the size of a frame.
template <typename Body>
PxnError EnterFrames(const EntryCall& call, PxnHandle handle, bool isGiven, OnVanished onVanished,
                     Waiting waiting, Body body,
                     std::uint32_t frameSize = sizeof(PxnFrame)) noexcept {
    return Enter(call, [&](Backend& backend) -> PxnError {
        Target target;
        if (!backend.Find(handle, target) || !target.frames) {
            return PxnErrBadHandle;
        }
        const bool isRefused = waiting == Waiting::kForCallbacks && WaitingIsRefused();
        if (target.HasVanished()) {
            if (onVanished == OnVanished::kRun && isGiven && !isRefused) {
                body(backend, target);
            }
            return PxnErrBadHandle;
        }
        if (!isGiven) {
            return PxnErrBadParameter;
        }
        if (frameSize != sizeof(PxnFrame)) {
            return PxnErrStructSize;
        }
        if (!target.isWritable) {
            return PxnErrInvalidAccess;
        }
        const PxnError result = isRefused ? PxnError{PxnErrInvalidCall} : body(backend, target);
        return onVanished == OnVanished::kRun && target.HasVanished() ? PxnError{PxnErrBadHandle}
                                                                      : result;
    });
}

/// Starts or ends a capture; what that locks or unlocks is reported before it returns.
PxnError ChangeCapture(const EntryCall& call, PxnHandle handle, OnVanished onVanished,
                       PxnError (FrameBook::*change)()) noexcept {
    return EnterFrames(call, handle, true, onVanished, Waiting::kForCallbacks,
                       [&](Backend& backend, const Target& target) {
                           const PxnError result = ((*target.frames).*change)();
                           target.module->OnCaptureChanged();
                           backend.Changes().DrainPatiently();
                           return result;
                       });
}

} // namespace

PxnError PXN_CALL PxnPayloadSizeGet(PxnHandle handle, uint32_t* payloadSize) {
    return EnterModule({__func__, {Argument::Handle(handle)}}, handle, payloadSize,
                       [&](Backend&, const Target& target) {
                           return target.frames ? target.module->GetPayloadSize(*payloadSize)
                                                : PxnError{PxnErrBadHandle};
                       });
}

PxnError PXN_CALL PxnFrameAnnounce(PxnHandle handle, const PxnFrame* frame, uint32_t size) {
    return EnterFrames(
        {__func__, {Argument::Handle(handle), Argument::Frame(frame), Argument::Size(size)}},
        handle, frame, OnVanished::kRefuse, Waiting::kNever,
        [&](Backend&, const Target& target) { return target.frames->Announce(frame); }, size);
}

PxnError PXN_CALL PxnFrameRevoke(PxnHandle handle, const PxnFrame* frame) {
    return EnterFrames(
        {__func__, {Argument::Handle(handle), Argument::Frame(frame)}}, handle, frame,
        OnVanished::kRun, Waiting::kForCallbacks,
        [&](Backend&, const Target& target) { return target.frames->Revoke(frame); });
}

PxnError PXN_CALL PxnFrameRevokeAll(PxnHandle handle) {
    return EnterFrames({__func__, {Argument::Handle(handle)}}, handle, true, OnVanished::kRun,
                       Waiting::kForCallbacks,
                       [](Backend&, const Target& target) { return target.frames->RevokeAll(); });
}

PxnError PXN_CALL PxnCaptureStart(PxnHandle handle) {
    return ChangeCapture({__func__, {Argument::Handle(handle)}}, handle, OnVanished::kRefuse,
                         &FrameBook::StartCapture);
}

PxnError PXN_CALL PxnCaptureEnd(PxnHandle handle) {
    return ChangeCapture({__func__, {Argument::Handle(handle)}}, handle, OnVanished::kRun,
                         &FrameBook::EndCapture);
}

PxnError PXN_CALL PxnCaptureFrameQueue(PxnHandle handle, const PxnFrame* frame,
                                       PxnFrameCallback callback) {
    return EnterFrames(
        {__func__,
         {Argument::Handle(handle), Argument::Frame(frame), Argument::Callback(callback)}},
        handle, frame, OnVanished::kRefuse, Waiting::kNever,
        [&](Backend&, const Target& target) { return target.frames->Queue(frame, callback); });
}

PxnError PXN_CALL PxnCaptureFrameWait(PxnHandle handle, const PxnFrame* frame, uint32_t timeout) {
    return EnterFrames(
        {__func__, {Argument::Handle(handle), Argument::Frame(frame), Argument::Size(timeout)}},
        handle, frame, OnVanished::kRefuse, Waiting::kForCallbacks,
        [&](Backend&, const Target& target) { return target.frames->Wait(frame, timeout); });
}

PxnError PXN_CALL PxnCaptureQueueFlush(PxnHandle handle) {
    return EnterFrames({__func__, {Argument::Handle(handle)}}, handle, true, OnVanished::kRun,
                       Waiting::kForCallbacks,
                       [](Backend&, const Target& target) { return target.frames->Flush(); });
}

PxnError PXN_CALL PxnChunkDataAccess(const PxnFrame* frame, PxnChunkAccessCallback callback,
                                     void* userContext) {
    return Enter({__func__, {Argument::Frame(frame), Argument::Callback(callback)}},
                 [&](Backend& backend) -> PxnError {
                     if (!frame || !callback) {
                         return PxnErrBadParameter;
                     }
                     return backend.AccessChunks(*frame, [&](PxnHandle chunks) -> PxnError {
                         const CallbackScope scope(CallbackKind::kChunk);
                         try {
                             return callback(chunks, userContext);
                         } catch (...) {
                             return PxnErrUserCallbackException;
                         }
                     });
                 });
}
