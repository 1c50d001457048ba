// entry_points_transport.cpp - transport layers, interfaces and registers
#include "pxnc/genicam/camera_device.h"
#include "pxnc/genicam/entry_point.h"

using namespace genicam;

namespace {

/// Runs `transfer(device)` for the camera behind the handle.
template <typename Transfer>
PxnError Access(PxnHandle handle, uint32_t size, const void* buffer, uint32_t* done,
                Transfer transfer) {
    return EnterModule(handle, [&](Library&, const Module& module) -> PxnError {
        if (buffer == nullptr || size == 0 || done == nullptr) {
            return PxnErrBadParameter;
        }
        *done = 0;
        if (module.Device() == nullptr) {
            return PxnErrNotSupported;
        }
        const PxnError result = transfer(*module.Device());
        *done = result == PxnErrSuccess ? size : 0;
        return result;
    });
}

} // namespace

PxnError PXN_CALL PxnTransportLayersList(PxnTransportLayerInfo* layers, uint32_t capacity,
                                         uint32_t* found, uint32_t size) {
    return Enter([&](Library& library) -> PxnError {
        return size == sizeof *layers
                   ? CopyList(library.Transports().Layers(), layers, capacity, found)
                   : PxnError{PxnErrStructSize};
    });
}

PxnError PXN_CALL PxnInterfacesList(PxnInterfaceInfo* interfaces, uint32_t capacity,
                                    uint32_t* found, uint32_t size) {
    return Enter([&](Library& library) -> PxnError {
        return size == sizeof *interfaces
                   ? CopyList(library.Transports().Interfaces(), interfaces, capacity, found)
                   : PxnError{PxnErrStructSize};
    });
}

PxnError PXN_CALL PxnMemoryRead(PxnHandle handle, uint64_t address, uint32_t size, char* buffer,
                                uint32_t* sizeComplete) {
    return Access(handle, size, buffer, sizeComplete, [&](const CameraDevice& device) {
        return device.ReadMemory(address, size, buffer);
    });
}

PxnError PXN_CALL PxnMemoryWrite(PxnHandle handle, uint64_t address, uint32_t size,
                                 const char* buffer, uint32_t* sizeComplete) {
    return Access(handle, size, buffer, sizeComplete, [&](const CameraDevice& device) {
        return device.WriteMemory(address, size, buffer);
    });
}
