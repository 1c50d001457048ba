// backend.cpp - the camera of a recording, between the first startup and the last shutdown
#include "pxnc/recording/backend.h"

#include <utility>

namespace playback {

Backend::Backend(std::shared_ptr<const Recording> played)
    : recording(std::move(played)),
      names(*recording),
      transportLayer(AddFixedModule(MakeTransportLayerModule(*this))),
      interface(AddFixedModule(MakeInterfaceModule(*this, names))) {
    const std::shared_ptr<PlaybackModule> system = MakeSystemModule(*this);
    system->SetHandle(PXN_SYSTEM_HANDLE);
    Handles().Put(PXN_SYSTEM_HANDLE, {system});
}

Backend::~Backend() {
    Backend::Stop();
}

PxnHandle Backend::AddFixedModule(const std::shared_ptr<PlaybackModule>& module) {
    const PxnHandle handle = Handles().Add({module});
    module->SetHandle(handle);
    return handle;
}

std::vector<PxnTransportLayerInfo> Backend::ListTransportLayers() {
    PxnTransportLayerInfo info{};
    info.transportLayerIdString = info.transportLayerName = info.transportLayerModelName =
        Texts().Intern("Recording");
    info.transportLayerVendor = Texts().Intern("Korvane");
    info.transportLayerVersion = Texts().Intern("1.0.0");
    info.transportLayerPath = Texts().Intern("");
    info.transportLayerHandle = transportLayer;
    info.transportLayerType = PxnTransportLayerCustom;
    return {info};
}

std::vector<PxnInterfaceInfo> Backend::ListInterfaces() {
    PxnInterfaceInfo info{};
    info.interfaceIdString = info.interfaceName = Texts().Intern(names.interfaceName);
    info.interfaceType = PxnTransportLayerCustom;
    info.interfaceHandle = interface;
    info.transportLayerHandle = transportLayer;
    return {info};
}

std::vector<PxnCameraInfo> Backend::ListCameras() {
    const platform::MutexLock lock(mutex);
    return {Describe()};
}

PxnCameraInfo Backend::Describe() {
    PxnCameraInfo info{};
    info.cameraIdString = Texts().Intern(names.id);
    info.cameraIdExtended = Texts().Intern(names.extendedId);
    info.cameraName = Texts().Intern(names.name);
    info.modelName = Texts().Intern(names.model);
    info.serialString = Texts().Intern(names.serial);
    info.transportLayerHandle = transportLayer;
    info.interfaceHandle = interface;
    if (opened.camera) {
        info.localDeviceHandle = opened.localDevice;
        info.streamHandles = &streamHandles.back();
        info.streamCount = 1;
    } else if (!isTaken) {
        info.permittedAccess = PxnAccessModeFull | PxnAccessModeRead;
    }
    return info;
}

PxnError Backend::DescribeCamera(const char* id, PxnCameraInfo& info) {
    if (!HasId(id)) {
        return PxnErrNotFound;
    }
    const platform::MutexLock lock(mutex);
    info = Describe();
    return PxnErrSuccess;
}

PxnError Backend::DescribeCamera(PxnHandle handle, PxnCameraInfo& info) {
    const platform::MutexLock lock(mutex);
    if (handle != opened.camera) {
        return PxnErrBadHandle;
    }
    info = Describe();
    return PxnErrSuccess;
}

PxnError Backend::OpenCamera(const char* id, std::uint32_t accessMode, PxnHandle& handle) {
    if (!HasId(id)) {
        return PxnErrNotFound;
    }
    const platform::MutexLock lock(mutex);
    if (isTaken) {
        return PxnErrInUse;
    }
    const auto player = std::make_shared<FramePlayer>(recording);
    const bool isWritable = accessMode == PxnAccessModeFull;
    const auto add = [&](const std::shared_ptr<PlaybackModule>& module, bool hasFrames,
                         bool isCamera) {
        skeleton::Target target{module};
        target.frames = hasFrames ? player : nullptr;
        target.isCamera = isCamera;
        target.isWritable = isWritable;
        const PxnHandle added = Handles().Add(std::move(target));
        module->SetHandle(added);
        return added;
    };
    opened.player = player;
    opened.localDevice = add(MakeLocalDeviceModule(*this, names), false, false);
    opened.stream = add(MakeStreamModule(*this, *recording), true, false);
    opened.camera = add(MakeCameraModule(*this, *recording, names, player), true, true);
    streamHandles.push_back(opened.stream);
    player->Open(opened.camera, opened.stream);
    isTaken = true;
    handle = opened.camera;
    return PxnErrSuccess;
}

PxnError Backend::CloseCamera(PxnHandle handle) {
    Opened closing;
    {
        const platform::MutexLock lock(mutex);
        if (!opened.camera || handle != opened.camera) {
            return PxnErrBadHandle;
        }
        closing = std::exchange(opened, {});
        for (const PxnHandle one : {closing.camera, closing.localDevice, closing.stream}) {
            Handles().Remove(one);
        }
    }
    for (const PxnHandle one : {closing.camera, closing.localDevice, closing.stream}) {
        Changes().UnregisterAll(one);
    }
    closing.player->Stop();
    closing.player->Close();
    const platform::MutexLock lock(mutex);
    isTaken = false; // it may be opened again from here on
    return PxnErrSuccess;
}

PxnError Backend::AccessChunks(const PxnFrame& frame, skeleton::FunctionRef<PxnError(PxnHandle)>) {
    std::shared_ptr<FramePlayer> player;
    {
        const platform::MutexLock lock(mutex);
        player = opened.player;
    }
    return player ? player->ChunksOf(frame) : PxnError{PxnErrNotFound};
}

void Backend::Stop() {
    PxnHandle open = nullptr;
    {
        const platform::MutexLock lock(mutex);
        open = opened.camera;
    }
    if (open) {
        Backend::CloseCamera(open);
    }
    Changes().Stop();
    Handles().Clear();
}

} // namespace playback
