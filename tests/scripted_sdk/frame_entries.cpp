// frame_entries.cpp - the scripted SDK's entries for frames and invalidation
#include "tests/scripted_sdk/call_text.h"
#include "tests/scripted_sdk/sdk_state.h"

using namespace scripted;

PxnError PXN_CALL PxnPayloadSizeGet(PxnHandle handle, uint32_t* payloadSize) {
    return State().Run(
        {.entry = "PxnPayloadSizeGet", .handle = handle, .arguments = Arguments(handle)},
        [&](SdkState::Lock&) -> PxnError {
            Module* module = State().FindModule(handle);
            const Feature* feature = module != nullptr ? module->Find("PayloadSize") : nullptr;
            if (feature == nullptr) {
                return module == nullptr ? PxnErrBadHandle : PxnErrNotFound;
            }
            *payloadSize = static_cast<uint32_t>(feature->intValue);
            return PxnErrSuccess;
        });
}

PxnError PXN_CALL PxnFrameAnnounce(PxnHandle handle, const PxnFrame* frame, uint32_t size) {
    return State().Run({.entry = "PxnFrameAnnounce",
                        .handle = handle,
                        .arguments = Arguments(handle, frame, size)},
                       [&](SdkState::Lock&) { return State().Announce(handle, frame); });
}

PxnError PXN_CALL PxnFrameRevoke(PxnHandle handle, const PxnFrame* frame) {
    return State().Run(
        {.entry = "PxnFrameRevoke", .handle = handle, .arguments = Arguments(handle, frame)},
        [&](SdkState::Lock& lock) { return State().Revoke(handle, frame, lock); });
}

PxnError PXN_CALL PxnFrameRevokeAll(PxnHandle handle) {
    return State().Run(
        {.entry = "PxnFrameRevokeAll", .handle = handle, .arguments = Arguments(handle)},
        [&](SdkState::Lock& lock) { return State().RevokeAll(handle, lock); });
}

PxnError PXN_CALL PxnCaptureStart(PxnHandle handle) {
    return State().Run(
        {.entry = "PxnCaptureStart", .handle = handle, .arguments = Arguments(handle)},
        [&](SdkState::Lock&) { return State().StartCapture(handle); });
}

PxnError PXN_CALL PxnCaptureEnd(PxnHandle handle) {
    return State().Run({.entry = "PxnCaptureEnd", .handle = handle, .arguments = Arguments(handle)},
                       [&](SdkState::Lock& lock) { return State().EndCapture(handle, lock); });
}

PxnError PXN_CALL PxnCaptureFrameQueue(PxnHandle handle, const PxnFrame* frame,
                                       PxnFrameCallback callback) {
    return State().Run({.entry = "PxnCaptureFrameQueue",
                        .handle = handle,
                        .arguments = Arguments(handle, frame, callback)},
                       [&](SdkState::Lock&) { return State().Queue(handle, frame, callback); });
}

PxnError PXN_CALL PxnCaptureFrameWait(PxnHandle handle, const PxnFrame* frame, uint32_t timeout) {
    return State().Run(
        {.entry = "PxnCaptureFrameWait",
         .handle = handle,
         .arguments = Arguments(handle, frame, timeout)},
        [&](SdkState::Lock& lock) { return State().WaitForFrame(handle, frame, timeout, lock); });
}

PxnError PXN_CALL PxnCaptureQueueFlush(PxnHandle handle) {
    return State().Run(
        {.entry = "PxnCaptureQueueFlush", .handle = handle, .arguments = Arguments(handle)},
        [&](SdkState::Lock&) { return State().Flush(handle); });
}

PxnError PXN_CALL PxnFeatureInvalidationRegister(PxnHandle handle, const char* name,
                                                 PxnInvalidationCallback callback,
                                                 void* userContext) {
    return State().Run(
        {.entry = "PxnFeatureInvalidationRegister",
         .handle = handle,
         .feature = name,
         .arguments = Arguments(handle, name, callback)},
        [&](SdkState::Lock&) { return State().Register(handle, name, callback, userContext); });
}

PxnError PXN_CALL PxnFeatureInvalidationUnregister(PxnHandle handle, const char* name,
                                                   PxnInvalidationCallback callback) {
    return State().Run(
        {.entry = "PxnFeatureInvalidationUnregister",
         .handle = handle,
         .feature = name,
         .arguments = Arguments(handle, name, callback)},
        [&](SdkState::Lock& lock) { return State().Unregister(handle, name, callback, lock); });
}

PxnError PXN_CALL PxnChunkDataAccess(const PxnFrame* frame, PxnChunkAccessCallback callback,
                                     void* userContext) {
    // The callback reads features, so it runs once the call's own lock is given back.
    const PxnError result =
        State().Run({.entry = "PxnChunkDataAccess", .arguments = Arguments(frame, callback)},
                    [](SdkState::Lock&) { return PxnErrSuccess; });
    return result != PxnErrSuccess ? result : callback(ChunkHandle(), userContext);
}
