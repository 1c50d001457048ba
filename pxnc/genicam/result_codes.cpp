// result_codes.cpp - Aravis' errors as result codes of the SDK
#include "pxnc/genicam/result_codes.h"

namespace genicam {
namespace {

PxnError FromDeviceError(int code) {
    switch (code) {
    case ARV_DEVICE_ERROR_WRONG_FEATURE:
        return PxnErrWrongType;
    case ARV_DEVICE_ERROR_FEATURE_NOT_FOUND:
    case ARV_DEVICE_ERROR_NOT_FOUND:
        return PxnErrNotFound;
    case ARV_DEVICE_ERROR_NOT_CONNECTED:
    case ARV_DEVICE_ERROR_NO_STREAM_CHANNEL:
        return PxnErrNotAvailable;
    case ARV_DEVICE_ERROR_TIMEOUT:
        return PxnErrTimeout;
    case ARV_DEVICE_ERROR_GENICAM_NOT_FOUND:
        return PxnErrFeaturesUnavailable;
    case ARV_DEVICE_ERROR_NOT_CONTROLLER:
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_WRITE_PROTECT:
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED:
        return PxnErrInvalidAccess;
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_NOT_IMPLEMENTED:
        return PxnErrNotSupported;
    case ARV_DEVICE_ERROR_INVALID_PARAMETER:
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_PARAMETER:
        return PxnErrInvalidValue;
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS:
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_BAD_ALIGNMENT:
        return PxnErrInvalidAddress;
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_BUSY:
        return PxnErrBusy;
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR:
    case ARV_DEVICE_ERROR_TRANSFER_ERROR:
        return PxnErrIO;
    default:
        return PxnErrOther;
    }
}

PxnError FromDescriptionError(int code) {
    switch (code) {
    case ARV_GC_ERROR_OUT_OF_RANGE:
    case ARV_GC_ERROR_ENUM_ENTRY_NOT_FOUND:
    case ARV_GC_ERROR_INVALID_LENGTH:
        return PxnErrInvalidValue;
    case ARV_GC_ERROR_READ_ONLY:
        return PxnErrInvalidAccess;
    case ARV_GC_ERROR_NO_DEVICE_SET:
        return PxnErrNotAvailable;
    case ARV_GC_ERROR_NO_EVENT_IMPLEMENTATION:
        return PxnErrNotSupported;
    default:
        // Everything else is a description that contradicts itself.
        return PxnErrXml;
    }
}

} // namespace

PxnError ToResult(const ErrorOwner& error) {
    const GError* reported = error.Get();
    if (!reported) {
        return PxnErrSuccess;
    }
    if (reported->domain == ARV_DEVICE_ERROR) {
        return FromDeviceError(reported->code);
    }
    if (reported->domain == ARV_GC_ERROR) {
        return FromDescriptionError(reported->code);
    }
    // The remaining domain is GIO's: a socket that failed.
    return PxnErrIO;
}

std::int32_t ToReceiveStatus(ArvBufferStatus status) {
    switch (status) {
    case ARV_BUFFER_STATUS_SUCCESS:
        return PxnFrameStatusComplete;
    case ARV_BUFFER_STATUS_TIMEOUT:
    case ARV_BUFFER_STATUS_MISSING_PACKETS:
    case ARV_BUFFER_STATUS_FILLING:
        return PxnFrameStatusIncomplete;
    case ARV_BUFFER_STATUS_SIZE_MISMATCH:
        return PxnFrameStatusTooSmall;
    default:
        return PxnFrameStatusInvalid;
    }
}

} // namespace genicam
