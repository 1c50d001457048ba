// frame_result.cpp - what was received into a frame
#include "pxnc/genicam/frame_result.h"

#include "pxnc/genicam/result_codes.h"

#include <algorithm>
#include <cstddef>

namespace genicam {
namespace {

std::uint32_t ToPayloadType(ArvBufferPayloadType type) {
    switch (type) {
    case ARV_BUFFER_PAYLOAD_TYPE_IMAGE:
    case ARV_BUFFER_PAYLOAD_TYPE_EXTENDED_CHUNK_DATA:
    case ARV_BUFFER_PAYLOAD_TYPE_MULTIZONE_IMAGE:
    case ARV_BUFFER_PAYLOAD_TYPE_MULTIPART:
        return PxnPayloadImage;
    case ARV_BUFFER_PAYLOAD_TYPE_RAWDATA:
    case ARV_BUFFER_PAYLOAD_TYPE_JPEG:
    case ARV_BUFFER_PAYLOAD_TYPE_JPEG2000:
    case ARV_BUFFER_PAYLOAD_TYPE_H264:
        return PxnPayloadRaw;
    case ARV_BUFFER_PAYLOAD_TYPE_FILE:
        return PxnPayloadFile;
    case ARV_BUFFER_PAYLOAD_TYPE_CHUNK_DATA:
        return PxnPayloadChunkOnly;
    default:
        return PxnPayloadUnknown;
    }
}

std::uint32_t ToUnsigned(gint value) {
    return static_cast<std::uint32_t>(std::max(value, 0));
}

/// Aravis reports a buffer that is too small as complete once it is full. The payload of a frame
/// may be smaller than announced, so a buffer that is merely smaller may have been enough.
bool WasCutOff(ArvBuffer* buffer, std::uint32_t bufferSize, std::uint32_t payloadSize) {
    std::size_t received = 0;
    arv_buffer_get_data(buffer, &received);
    return bufferSize < payloadSize && received >= bufferSize;
}

/// Aravis knows where the image is only in buffers that are complete.
bool HasImage(ArvBuffer* buffer) {
    return arv_buffer_get_status(buffer) == ARV_BUFFER_STATUS_SUCCESS &&
           arv_buffer_get_n_parts(buffer) > 0 &&
           arv_buffer_get_part_data_type(buffer, 0) == ARV_BUFFER_PART_DATA_TYPE_2D_IMAGE;
}

void WriteImage(ArvBuffer* buffer, PxnFrame& frame) {
    gint x = 0;
    gint y = 0;
    gint width = 0;
    gint height = 0;
    arv_buffer_get_image_region(buffer, &x, &y, &width, &height);
    frame.offsetX = ToUnsigned(x);
    frame.offsetY = ToUnsigned(y);
    frame.width = ToUnsigned(width);
    frame.height = ToUnsigned(height);
    frame.pixelFormat = arv_buffer_get_image_pixel_format(buffer);
    std::size_t size = 0;
    // The data lies in the announced memory, which is the caller's to write.
    frame.imageData = const_cast<void*>(arv_buffer_get_image_data(buffer, &size));
    frame.imageSize = static_cast<std::uint32_t>(size);
    frame.receiveFlags |= PxnFrameFlagDimension | PxnFrameFlagOffset | PxnFrameFlagImageData;
}

} // namespace

void WriteFrameResult(ArvBuffer* buffer, std::uint32_t payloadSize, PxnFrame& frame) {
    PxnFrame result = {};
    result.buffer = frame.buffer;
    result.bufferSize = frame.bufferSize;
    std::copy(std::begin(frame.context), std::end(frame.context), std::begin(result.context));

    const ArvBufferPayloadType type = arv_buffer_get_payload_type(buffer);
    result.receiveStatus = ToReceiveStatus(arv_buffer_get_status(buffer));
    if (result.receiveStatus == PxnFrameStatusComplete &&
        WasCutOff(buffer, frame.bufferSize, payloadSize)) {
        result.receiveStatus = PxnFrameStatusTooSmall;
    }
    result.frameId = arv_buffer_get_frame_id(buffer);
    result.timestamp = arv_buffer_get_timestamp(buffer);
    result.payloadType = ToPayloadType(type);
    result.receiveFlags = PxnFrameFlagFrameId | PxnFrameFlagTimestamp;
    // Without its first packet nothing is known of a frame but that it was sent.
    if (type != ARV_BUFFER_PAYLOAD_TYPE_UNKNOWN) {
        result.receiveFlags |= PxnFrameFlagPayloadType;
    }
    if (HasImage(buffer)) {
        WriteImage(buffer, result);
    } else if (arv_buffer_get_status(buffer) == ARV_BUFFER_STATUS_SUCCESS) {
        std::size_t size = 0;
        result.imageData = const_cast<void*>(arv_buffer_get_data(buffer, &size));
        result.imageSize = static_cast<std::uint32_t>(size);
        result.receiveFlags |= PxnFrameFlagImageData;
    }
    if (arv_buffer_has_chunks(buffer)) {
        result.chunkDataPresent = 1;
        result.receiveFlags |= PxnFrameFlagChunkData;
    }
    frame = result;
}

} // namespace genicam
