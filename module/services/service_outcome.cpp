// service_outcome.cpp - how a service ended, and why
#include "services/service_outcome.h"

#include "sdk/sdk_error.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace pyxen {

namespace {

MV_SERVICE_RESULT ResultOf(PxnError code, bool isOfCamera) {
    switch (code) {
    case PxnErrNotFound:
        return MV_SERVICE_NOT_FOUND;
    case PxnErrBadHandle:
        return isOfCamera ? MV_SERVICE_NO_CAMERA : MV_SERVICE_SDK_FAILED;
    case PxnErrInvalidAccess:
        return MV_SERVICE_NO_ACCESS;
    case PxnErrWrongType:
        return MV_SERVICE_WRONG_TYPE;
    case PxnErrInvalidValue:
        return MV_SERVICE_OUT_OF_RANGE;
    case PxnErrNotImplemented:
    case PxnErrNotSupported:
        return MV_SERVICE_NOT_SUPPORTED;
    default:
        return MV_SERVICE_SDK_FAILED;
    }
}

} // namespace

ServiceOutcome SdkFailure(const std::string& what, PxnError code, bool isOfCamera) {
    const MV_SERVICE_RESULT result = ResultOf(code, isOfCamera);
    if (result == MV_SERVICE_NO_CAMERA) {
        return {result, what + ": the camera has gone"};
    }
    const char* const text = SdkErrorText(code);
    return {result, what + ": " + (text ? text : "the camera's SDK failed") + " (" +
                        std::to_string(code) + ")"};
}

void StoreReason(const char* text, MV_SERVICE_REASON* reason) {
    constexpr std::size_t kTextOffset = offsetof(MV_SERVICE_REASON, text);
    if (!reason || reason->size <= kTextOffset) {
        return;
    }
    const std::size_t room = std::min<std::size_t>(reason->size - kTextOffset, sizeof reason->text);
    std::size_t length = std::strlen(text);
    if (length >= room) {
        length = room - 1;
        // Not behind the first byte of a character.
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0u) == 0x80u) {
            --length;
        }
    }
    std::memcpy(reason->text, text, length);
    reason->text[length] = '\0';
}

} // namespace pyxen
