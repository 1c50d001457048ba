// Registers, settings and chunk data.

#include "pxnc/simulator/sdk.h"

using namespace pxsim;

PxnError PXN_CALL PxnMemoryRead(PxnHandle handle, uint64_t, uint32_t, char* buffer,
                                uint32_t* sizeComplete) {
    return CallOn(__func__, handle, [&](Simulator&, const HandleTarget&) -> PxnError {
        return buffer == nullptr || sizeComplete == nullptr ? PxnErrBadParameter
                                                            : PxnErrInvalidAddress;
    });
}

PxnError PXN_CALL PxnMemoryWrite(PxnHandle handle, uint64_t, uint32_t, const char* buffer,
                                 uint32_t* sizeComplete) {
    return CallOn(__func__, handle, [&](Simulator&, const HandleTarget&) -> PxnError {
        return buffer == nullptr || sizeComplete == nullptr ? PxnErrBadParameter
                                                            : PxnErrInvalidAddress;
    });
}

PxnError PXN_CALL PxnSettingsSave(PxnHandle handle, const wchar_t*, const void*, uint32_t) {
    return CallOn(__func__, handle,
                  [&](Simulator&, const HandleTarget&) -> PxnError { return PxnErrNotSupported; });
}

PxnError PXN_CALL PxnSettingsLoad(PxnHandle handle, const wchar_t*, const void*, uint32_t) {
    return CallOn(__func__, handle,
                  [&](Simulator&, const HandleTarget&) -> PxnError { return PxnErrNotSupported; });
}

PxnError PXN_CALL PxnChunkDataAccess(const PxnFrame* frame, PxnChunkAccessCallback callback,
                                     void*) {
    return Call(__func__, [&](Simulator&) -> PxnError {
        return frame == nullptr || callback == nullptr ? PxnErrBadParameter : PxnErrNoChunkData;
    });
}
