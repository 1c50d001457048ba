// entries_library.cpp - startup, shutdown, cameras and transport
#include "pxnc/skeleton/entry.h"

using namespace skeleton;

namespace {

/// A list of records that belong to no module.
template <typename Record>
PxnError ListRecords(const EntryCall& call, std::vector<Record> (Backend::*list)(), Record* array,
                     std::uint32_t capacity, std::uint32_t* found, std::uint32_t size) noexcept {
    return Enter(call, [&](Backend& backend) -> PxnError {
        if (!IsListPlace(array, capacity, found)) {
            return PxnErrBadParameter;
        }
        return size == sizeof(Record)
                   ? CopyList(call.entry, (backend.*list)(), array, capacity, found)
                   : PxnError{PxnErrStructSize};
    });
}

} // namespace

PxnError PXN_CALL PxnVersionQuery(PxnVersionInfo* info, uint32_t size) {
    return Guarded([&]() -> PxnError {
        if (const PxnError refused =
                TheImplementation().OnCall({"PxnVersionQuery", {Argument::Size(size)}})) {
            return refused;
        }
        if (!info) {
            return PxnErrBadParameter;
        }
        if (size != sizeof *info) {
            return PxnErrStructSize;
        }
        *info = TheImplementation().Version();
        return PxnErrSuccess;
    });
}

PxnError PXN_CALL PxnStartup(const wchar_t* configPath) {
    // A startup counts, whatever fails in it.
    const PxnError refused = Guarded([&] {
        return TheImplementation().OnCall({"PxnStartup", {Argument::Path(configPath)}});
    });
    return Guarded([&] { return Library::Instance().Startup(configPath, refused); });
}

void PXN_CALL PxnShutdown(void) {
    Guarded([] { return TheImplementation().OnCall({"PxnShutdown"}); });
    Guarded([] {
        Library::Instance().Shutdown();
        return PxnErrSuccess;
    });
}

PxnError PXN_CALL PxnCamerasList(PxnCameraInfo* cameras, uint32_t capacity, uint32_t* found,
                                 uint32_t size) {
    return ListRecords(
        {__func__, {Argument::Place(cameras), Argument::Size(capacity), Argument::Size(size)}},
        &Backend::ListCameras, cameras, capacity, found, size);
}

PxnError PXN_CALL PxnTransportLayersList(PxnTransportLayerInfo* layers, uint32_t capacity,
                                         uint32_t* found, uint32_t size) {
    return ListRecords(
        {__func__, {Argument::Place(layers), Argument::Size(capacity), Argument::Size(size)}},
        &Backend::ListTransportLayers, layers, capacity, found, size);
}

PxnError PXN_CALL PxnInterfacesList(PxnInterfaceInfo* interfaces, uint32_t capacity,
                                    uint32_t* found, uint32_t size) {
    return ListRecords(
        {__func__, {Argument::Place(interfaces), Argument::Size(capacity), Argument::Size(size)}},
        &Backend::ListInterfaces, interfaces, capacity, found, size);
}

PxnError PXN_CALL PxnCameraInfoQueryByHandle(PxnHandle camera, PxnCameraInfo* info, uint32_t size) {
    return Enter({__func__, {Argument::Handle(camera), Argument::Size(size)}},
                 [&](Backend& backend) -> PxnError {
                     Target target;
                     if (!backend.Find(camera, target) || !target.isCamera ||
                         target.HasVanished()) {
                         return PxnErrBadHandle;
                     }
                     if (!info) {
                         return PxnErrBadParameter;
                     }
                     return size == sizeof *info ? backend.DescribeCamera(camera, *info)
                                                 : PxnError{PxnErrStructSize};
                 });
}

PxnError PXN_CALL PxnCameraInfoQuery(const char* id, PxnCameraInfo* info, uint32_t size) {
    return Enter({__func__, {Argument::Text(id), Argument::Size(size)}},
                 [&](Backend& backend) -> PxnError {
                     if (!id || !info) {
                         return PxnErrBadParameter;
                     }
                     return size == sizeof *info ? backend.DescribeCamera(id, *info)
                                                 : PxnError{PxnErrStructSize};
                 });
}

PxnError PXN_CALL PxnCameraOpen(const char* id, uint32_t accessMode, PxnHandle* camera) {
    return Enter({__func__, {Argument::Text(id), Argument::Size(accessMode)}},
                 [&](Backend& backend) -> PxnError {
                     if (!id || !camera ||
                         (accessMode != PxnAccessModeFull && accessMode != PxnAccessModeRead)) {
                         return PxnErrBadParameter;
                     }
                     return WaitingIsRefused() ? PxnError{PxnErrInvalidCall}
                                               : backend.OpenCamera(id, accessMode, *camera);
                 });
}

PxnError PXN_CALL PxnCameraClose(PxnHandle camera) {
    return Enter({__func__, {Argument::Handle(camera)}}, [&](Backend& backend) -> PxnError {
        Target target;
        if (!backend.Find(camera, target) || !target.isCamera) {
            return PxnErrBadHandle;
        }
        if (WaitingIsRefused()) {
            return PxnErrInvalidCall;
        }
        const bool hadVanished = target.HasVanished();
        target = {}; // a camera may wait until nobody uses it any more
        const PxnError result = backend.CloseCamera(camera);
        return hadVanished ? PxnError{PxnErrBadHandle} : result;
    });
}

PxnError PXN_CALL PxnMemoryRead(PxnHandle handle, uint64_t address, uint32_t size, char* buffer,
                                uint32_t* sizeComplete) {
    return EnterModule(
        {__func__, {Argument::Handle(handle), Argument::Size(address), Argument::Size(size)}},
        handle, buffer && sizeComplete, [&](Backend&, const Target& target) {
            *sizeComplete = 0;
            return target.module->ReadMemory(address, buffer, size, *sizeComplete);
        });
}

PxnError PXN_CALL PxnMemoryWrite(PxnHandle handle, uint64_t address, uint32_t size,
                                 const char* buffer, uint32_t* sizeComplete) {
    return EnterModule(
        {__func__,
         {Argument::Handle(handle), Argument::Size(address), Argument::Bytes(buffer, size)}},
        handle, buffer && sizeComplete, [&](Backend&, const Target& target) -> PxnError {
            *sizeComplete = 0;
            return target.isWritable
                       ? target.module->WriteMemory(address, buffer, size, *sizeComplete)
                       : PxnError{PxnErrInvalidAccess};
        });
}
