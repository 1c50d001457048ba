// entry_points_acquisition.cpp - frames and captures
#include "pxnc/genicam/camera_device.h"
#include "pxnc/genicam/entry_point.h"
#include "pxnc/genicam/frame_stream.h"

using namespace genicam;

namespace {

/// Runs `body(frames)` for the camera or stream behind the handle.
template <typename Body>
PxnError EnterFrames(PxnHandle handle, Body body) {
    return EnterModule(handle, [&](Library&, const Module& module) {
        return module.Frames() != nullptr ? body(*module.Frames()) : PxnError{PxnErrBadHandle};
    });
}

/// As EnterFrames for what clears up: it does its work for a vanished camera too, so that the
/// memory of the frames is the caller's again whatever the answer is.
template <typename Body>
PxnError EnterTidying(PxnHandle handle, Body body) {
    return Enter([&](Library& library) -> PxnError {
        const std::shared_ptr<Module> module = library.Handles().Find(handle);
        return module != nullptr && module->Frames() != nullptr ? body(library, *module)
                                                                : PxnError{PxnErrBadHandle};
    });
}

/// Starting and ending a capture locks and unlocks features.
void ReportCapture(Library& library, const Module& module) {
    library.Changes().ReportWrite(module.Handle(), {});
    for (const PxnHandle dependent : module.Dependents()) {
        library.Changes().ReportWrite(dependent, {});
    }
}

} // namespace

PxnError PXN_CALL PxnPayloadSizeGet(PxnHandle handle, uint32_t* payloadSize) {
    return EnterModule(handle, [&](Library&, const Module& module) -> PxnError {
        if (payloadSize == nullptr) {
            return PxnErrBadParameter;
        }
        return module.Frames() != nullptr ? module.Device()->GetPayloadSize(*payloadSize)
                                          : PxnError{PxnErrBadHandle};
    });
}

PxnError PXN_CALL PxnFrameAnnounce(PxnHandle handle, const PxnFrame* frame, uint32_t size) {
    return EnterFrames(handle, [&](FrameStream& frames) -> PxnError {
        if (frame == nullptr) {
            return PxnErrBadParameter;
        }
        return size == sizeof *frame ? frames.Announce(frame) : PxnError{PxnErrStructSize};
    });
}

PxnError PXN_CALL PxnFrameRevoke(PxnHandle handle, const PxnFrame* frame) {
    return EnterTidying(handle, [&](Library&, const Module& module) {
        return frame != nullptr ? module.Frames()->Revoke(frame) : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFrameRevokeAll(PxnHandle handle) {
    return EnterTidying(
        handle, [](Library&, const Module& module) { return module.Frames()->RevokeAll(); });
}

PxnError PXN_CALL PxnCaptureStart(PxnHandle handle) {
    return EnterModule(handle, [](Library& library, const Module& module) -> PxnError {
        if (module.Frames() == nullptr) {
            return PxnErrBadHandle;
        }
        const PxnError result = module.Frames()->StartCapture();
        ReportCapture(library, module);
        return result;
    });
}

PxnError PXN_CALL PxnCaptureEnd(PxnHandle handle) {
    return EnterTidying(handle, [](Library& library, const Module& module) {
        const PxnError result = module.Frames()->EndCapture();
        ReportCapture(library, module);
        return result;
    });
}

PxnError PXN_CALL PxnCaptureFrameQueue(PxnHandle handle, const PxnFrame* frame,
                                       PxnFrameCallback callback) {
    return EnterFrames(handle, [&](FrameStream& frames) {
        return frame != nullptr ? frames.Queue(frame, callback) : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnCaptureFrameWait(PxnHandle handle, const PxnFrame* frame, uint32_t timeout) {
    return Enter([&](Library& library) -> PxnError {
        const std::shared_ptr<Module> module = library.Handles().Find(handle);
        if (module == nullptr || module->Frames() == nullptr || module->IsLost()) {
            return PxnErrBadHandle;
        }
        return frame != nullptr ? module->Frames()->Wait(frame, timeout)
                                : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnCaptureQueueFlush(PxnHandle handle) {
    return EnterTidying(handle,
                        [](Library&, const Module& module) { return module.Frames()->Flush(); });
}
