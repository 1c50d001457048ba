// frame_chunks.cpp - reading what a camera has sent: images and the data along with them
#include "acquisition/acquisition.h"
#include "acquisition/hand_over_scope.h"
#include "imaging/pixel_format.h"
#include "sdk/callback_scope.h"
#include "sdk/no_throw.h"

#include <algorithm>

namespace pyxen {

namespace {

MV_SERVICE_RESULT CopyImage(FrameRecord& record, SentImage& image) {
    const PxnFrame& frame = *record.Frame();
    const bool hasImage = frame.receiveStatus == PxnFrameStatusComplete ||
                          frame.receiveStatus == PxnFrameStatusIncomplete;
    const bool hasSize = (frame.receiveFlags & PxnFrameFlagImageData) != 0;
    const ImageMemory& memory = record.Filled();
    const std::uint64_t bytes =
        std::min<std::uint64_t>(hasSize ? frame.imageSize : frame.bufferSize, memory.Size());
    if (!hasImage || bytes == 0) {
        return MV_SERVICE_NOT_SUPPORTED;
    }
    const bool hasFormat = (frame.receiveFlags & PxnFrameFlagDimension) != 0;
    const PixelFormat* const sent = hasFormat ? FindPixelFormatByCode(frame.pixelFormat) : nullptr;
    const PixelFormat* const format = sent ? sent : record.Format();
    return NoThrow(MV_SERVICE_OUT_OF_MEMORY, [&] {
        image.format = format ? format->name : "";
        image.bytes.assign(memory.Get(), memory.Get() + bytes);
        return MV_SERVICE_OK;
    });
}

} // namespace

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
    return WhileAtHome(index, [&](FrameRecord& record) {
        return AccessChunks(*record.Frame(), callback, context, error);
    });
}

MV_SERVICE_RESULT Acquisition::CopySentImage(std::uint64_t index, SentImage& image) {
    if (!api.IsValid() || !cameraHandle.load()) {
        return MV_SERVICE_NO_CAMERA;
    }
    const PxnFrame* const received = CallbackScope::FrameOf(this);
    if (received && IndexOf(*received) == index) {
        FrameRecord* const record = frames.FindRecord(*received);
        return record && record->Frame() == received ? CopyImage(*record, image)
                                                     : MV_SERVICE_NOT_FOUND;
    }
    return WhileAtHome(index, [&](FrameRecord& record) {
        return record.IsAsReceived() ? CopyImage(record, image) : MV_SERVICE_GONE;
    });
}

template <typename Access>
MV_SERVICE_RESULT Acquisition::WhileAtHome(std::uint64_t index, Access access) {
    // No callback waits for another thread.
    if (!CallbackScope::IsInside()) {
        chunkMutex.Lock();
    } else if (!chunkMutex.TryLock()) {
        return MV_SERVICE_BUSY;
    }
    FrameRecord* record = nullptr;
    MV_SERVICE_RESULT result = FindAtHome(index, record);
    if (result == MV_SERVICE_OK) {
        result = access(*record);
    }
    chunkMutex.Unlock();
    return result;
}

MV_SERVICE_RESULT Acquisition::FindAtHome(std::uint64_t index, FrameRecord*& record) {
    if (areRecordsShaped) {
        return MV_SERVICE_GONE;
    }
    MV_FRAME_INFO info{};
    if (index >= frames.Size() || !LoadFrameInfo(index, info) || info.picture == MV_PICTURE_NONE) {
        return MV_SERVICE_NOT_FOUND;
    }
    record = &frames[index];
    return record->Hold().IsWithSdk() ? MV_SERVICE_GONE : MV_SERVICE_OK;
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
