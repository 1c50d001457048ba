// frame_chunks.cpp - reading the data that a camera has sent along with an image
#include "acquisition/acquisition.h"
#include "acquisition/hand_over_scope.h"
#include "sdk/callback_scope.h"

namespace pyxen {

bool Acquisition::IsHandingOver(std::uint64_t index) const {
    if (const PxnFrame* const frame = CallbackScope::FrameOf(this)) {
        return IndexOf(*frame) == index;
    }
    return index == 0 && HandOverScope::IsInside(*this);
}

MV_SERVICE_RESULT Acquisition::ReadChunks(std::uint64_t index, PxnChunkAccessCallback callback,
                                          void* context, PxnError& error) {
    const PxnFrame* const received = CallbackScope::FrameOf(this);
    if (received && IndexOf(*received) == index) {
        // Nobody queues it before this thread does.
        return AccessChunks(*received, callback, context, error);
    }
    // No callback waits for another thread.
    if (!CallbackScope::IsInside()) {
        chunkMutex.Lock();
    } else if (!chunkMutex.TryLock()) {
        return MV_SERVICE_BUSY;
    }
    const MV_SERVICE_RESULT result = ReadChunksAtHome(index, callback, context, error);
    chunkMutex.Unlock();
    return result;
}

MV_SERVICE_RESULT Acquisition::ReadChunksAtHome(std::uint64_t index,
                                                PxnChunkAccessCallback callback, void* context,
                                                PxnError& error) {
    if (areRecordsShaped) {
        return MV_SERVICE_GONE;
    }
    MV_FRAME_INFO info{};
    if (index >= frames.Size() || !LoadFrameInfo(index, info) || info.picture == MV_PICTURE_NONE) {
        return MV_SERVICE_NOT_FOUND;
    }
    FrameRecord& record = frames[index];
    if (record.Hold().IsWithSdk()) {
        return MV_SERVICE_GONE;
    }
    return AccessChunks(*record.Frame(), callback, context, error);
}

MV_SERVICE_RESULT Acquisition::AccessChunks(const PxnFrame& frame, PxnChunkAccessCallback callback,
                                            void* context, PxnError& error) {
    if (!api.IsValid() || !cameraHandle.load()) {
        return MV_SERVICE_NO_CAMERA;
    }
    if ((frame.receiveFlags & PxnFrameFlagChunkData) == 0 || frame.chunkDataPresent == 0) {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    error = api.PxnChunkDataAccess(&frame, callback, context);
    switch (error) {
    case PxnErrSuccess:
        return MV_SERVICE_OK;
    case PxnErrNoChunkData:
    case PxnErrNotSupported:
    case PxnErrNotImplemented:
        return MV_SERVICE_NOT_SUPPORTED;
    case PxnErrNotFound: // revoked
    case PxnErrNoData:
        return MV_SERVICE_GONE;
    case PxnErrBadHandle:
        return MV_SERVICE_NO_CAMERA;
    default:
        return MV_SERVICE_SDK_FAILED;
    }
}

} // namespace pyxen
