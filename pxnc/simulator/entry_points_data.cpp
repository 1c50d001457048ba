// Registers, settings and chunk data.

#include "pxnc/simulator/sdk.h"

using namespace pxsim;

namespace {

// Registers are the camera's own: other modules have none.
template <class Buffer, class Action>
PxnError OnRegisters(const char* entry, PxnHandle handle, Buffer* buffer, uint32_t* sizeComplete,
                     bool writes, Action action) noexcept {
    return CallOn(entry, handle, [&](Simulator&, const HandleTarget& target) -> PxnError {
        if (buffer == nullptr || sizeComplete == nullptr) {
            return PxnErrBadParameter;
        }
        *sizeComplete = 0;
        if (!target.isCamera) {
            return PxnErrNotSupported;
        }
        if (writes && !target.writable) {
            return PxnErrInvalidAccess;
        }
        return action(target.camera->Registers());
    });
}

} // namespace

PxnError PXN_CALL PxnMemoryRead(PxnHandle handle, uint64_t address, uint32_t size, char* buffer,
                                uint32_t* sizeComplete) {
    return OnRegisters(__func__, handle, buffer, sizeComplete, false,
                       [&](RegisterSpace& registers) {
                           return registers.Read(address, size,
                                                 reinterpret_cast<uint8_t*>(buffer), *sizeComplete);
                       });
}

PxnError PXN_CALL PxnMemoryWrite(PxnHandle handle, uint64_t address, uint32_t size,
                                 const char* buffer, uint32_t* sizeComplete) {
    return OnRegisters(__func__, handle, buffer, sizeComplete, true, [&](RegisterSpace& registers) {
        return registers.Write(address, size, reinterpret_cast<const uint8_t*>(buffer),
                               *sizeComplete);
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
