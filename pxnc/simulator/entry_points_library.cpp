// Startup, shutdown and the lists of modules.

#include "pxnc/simulator/sdk.h"

#include <algorithm>

using namespace pxsim;

namespace {

constexpr PxnVersionInfo kVersion = {1, 4, 0};

std::vector<Camera*> PluggedCameras(const Simulator& simulator) {
    std::vector<Camera*> plugged;
    for (const auto& camera : simulator.Cameras()) {
        if (camera->IsPlugged()) {
            plugged.push_back(camera.get());
        }
    }
    return plugged;
}

} // namespace

PxnError PXN_CALL PxnVersionQuery(PxnVersionInfo* info, uint32_t size) {
    if (const PxnError fault = Faults::Instance().OnCall(__func__); fault != PxnErrSuccess) {
        return fault;
    }
    if (info == nullptr) {
        return PxnErrBadParameter;
    }
    if (size != sizeof *info) {
        return PxnErrStructSize;
    }
    *info = kVersion;
    return PxnErrSuccess;
}

PxnError PXN_CALL PxnStartup(const wchar_t* configPath) {
    try {
        if (const PxnError fault = Faults::Instance().OnCall(__func__); fault != PxnErrSuccess) {
            return fault;
        }
        return Sdk::Instance().Startup(configPath);
    } catch (const std::bad_alloc&) {
        return PxnErrResources;
    } catch (...) {
        return PxnErrInternalFault;
    }
}

void PXN_CALL PxnShutdown(void) {
    Faults::Instance().OnCall(__func__);
    Sdk::Instance().Shutdown();
}

PxnError PXN_CALL PxnCamerasList(PxnCameraInfo* cameras, uint32_t capacity, uint32_t* found,
                                 uint32_t size) {
    const char* entry = __func__;
    return Call(entry, [&](Simulator& simulator) -> PxnError {
        if (size != sizeof *cameras) {
            return PxnErrStructSize;
        }
        const std::vector<Camera*> plugged = PluggedCameras(simulator);
        return FillList(
            entry, plugged.size(), cameras, capacity, found,
            [&](std::size_t index, PxnCameraInfo& info) { plugged[index]->FillInfo(info); });
    });
}

PxnError PXN_CALL PxnCameraInfoQueryByHandle(PxnHandle camera, PxnCameraInfo* info, uint32_t size) {
    return CallOn(__func__, camera, [&](Simulator&, const HandleTarget& target) -> PxnError {
        if (info == nullptr) {
            return PxnErrBadParameter;
        }
        if (size != sizeof *info) {
            return PxnErrStructSize;
        }
        if (target.camera == nullptr) {
            return PxnErrBadHandle;
        }
        target.camera->FillInfo(*info);
        return PxnErrSuccess;
    });
}

PxnError PXN_CALL PxnCameraInfoQuery(const char* id, PxnCameraInfo* info, uint32_t size) {
    return Call(__func__, [&](Simulator& simulator) -> PxnError {
        if (id == nullptr || info == nullptr) {
            return PxnErrBadParameter;
        }
        if (size != sizeof *info) {
            return PxnErrStructSize;
        }
        const Camera* camera = simulator.FindCamera(id);
        if (camera == nullptr || !camera->IsPlugged()) {
            return PxnErrNotFound;
        }
        camera->FillInfo(*info);
        return PxnErrSuccess;
    });
}

PxnError PXN_CALL PxnTransportLayersList(PxnTransportLayerInfo* layers, uint32_t capacity,
                                         uint32_t* found, uint32_t size) {
    const char* entry = __func__;
    return Call(entry, [&](Simulator& simulator) -> PxnError {
        if (size != sizeof *layers) {
            return PxnErrStructSize;
        }
        return FillList(entry, simulator.TransportLayers().size(), layers, capacity, found,
                        [&](std::size_t index, PxnTransportLayerInfo& info) {
                            simulator.TransportLayers()[index]->FillInfo(info);
                        });
    });
}

PxnError PXN_CALL PxnInterfacesList(PxnInterfaceInfo* interfaces, uint32_t capacity,
                                    uint32_t* found, uint32_t size) {
    const char* entry = __func__;
    return Call(entry, [&](Simulator& simulator) -> PxnError {
        if (size != sizeof *interfaces) {
            return PxnErrStructSize;
        }
        return FillList(entry, simulator.Interfaces().size(), interfaces, capacity, found,
                        [&](std::size_t index, PxnInterfaceInfo& info) {
                            simulator.Interfaces()[index]->FillInfo(info);
                        });
    });
}
