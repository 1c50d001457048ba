// scripted_backend.cpp - the scripted SDK between the first startup and the last shutdown
#include "tests/scripted_sdk/scripted_backend.h"

#include "platform/mutex.h"
#include "pxnc/skeleton/backend.h"
#include "pxnc/skeleton/library.h"
#include "pxnc/skeleton/never_destroyed.h"
#include "tests/scripted_sdk/model_lookup.h"
#include "tests/scripted_sdk/nonsense.h"
#include "tests/scripted_sdk/scripted_module.h"
#include "tests/scripted_sdk/sdk_state.h"

#include <map>
#include <utility>

namespace scripted {
namespace {

/// Handles are fixed (CameraHandle() and so on), and all that the model has resolve at any time;
/// only frames want an open camera.
class ScriptedBackend final : public skeleton::Backend {
public:
    bool Find(PxnHandle handle, skeleton::Target& target) override;
    std::vector<PxnTransportLayerInfo> ListTransportLayers() override;
    std::vector<PxnInterfaceInfo> ListInterfaces() override;
    std::vector<PxnCameraInfo> ListCameras() override;
    PxnError DescribeCamera(const char* id, PxnCameraInfo& info) override;
    PxnError DescribeCamera(PxnHandle camera, PxnCameraInfo& info) override;
    PxnError OpenCamera(const char* id, std::uint32_t accessMode, PxnHandle& camera) override;
    PxnError CloseCamera(PxnHandle camera) override;
    PxnError AccessChunks(const PxnFrame& frame,
                          skeleton::FunctionRef<PxnError(PxnHandle)> read) override;
    void Stop() override;

    std::vector<std::shared_ptr<ScriptedFrames>> ListOpen() EXCLUDES(mutex);

private:
    struct CameraState {
        std::shared_ptr<ScriptedFrames> frames; // null while the camera is closed
        std::vector<PxnHandle> streams;         // kept for the records of a closed camera
        bool isWritable = true;                 // false while it is open for reading
    };

    PxnCameraInfo Describe(const Model& model, std::size_t index) EXCLUDES(mutex);
    std::shared_ptr<ScriptedFrames> FramesOf(std::size_t index) EXCLUDES(mutex);

    platform::Mutex mutex; // locked after the model's
    std::map<std::size_t, CameraState> cameras GUARDED_BY(mutex);
};

bool ScriptedBackend::Find(PxnHandle handle, skeleton::Target& target) {
    const Place place = WithModel([&](Model& model) { return FindPlace(model, handle); });
    if (!place.module) {
        return false;
    }
    target = {MakeModule(handle, Texts())};
    if (place.camera) {
        target.frames = FramesOf(*place.camera);
        target.isCamera = handle == CameraHandle(*place.camera);
        platform::MutexLock lock(mutex);
        target.isWritable = cameras[*place.camera].isWritable;
    }
    return true;
}

std::vector<PxnTransportLayerInfo> ScriptedBackend::ListTransportLayers() {
    return WithModel([&](const Model& model) {
        std::vector<PxnTransportLayerInfo> infos;
        for (const TransportLayer& layer : model.transportLayers) {
            PxnTransportLayerInfo info{};
            info.transportLayerIdString = Say(Texts(), layer.id);
            info.transportLayerName = Say(Texts(), layer.name);
            info.transportLayerModelName = Say(Texts(), layer.modelName);
            info.transportLayerVendor = Say(Texts(), layer.vendor);
            info.transportLayerVersion = Say(Texts(), layer.version);
            info.transportLayerPath = Say(Texts(), layer.path);
            info.transportLayerHandle = TransportLayerHandle(infos.size());
            info.transportLayerType = layer.type;
            infos.push_back(info);
        }
        return infos;
    });
}

std::vector<PxnInterfaceInfo> ScriptedBackend::ListInterfaces() {
    return WithModel([&](const Model& model) {
        std::vector<PxnInterfaceInfo> infos;
        for (const Interface& one : model.interfaces) {
            PxnInterfaceInfo info{};
            info.interfaceIdString = Say(Texts(), one.id);
            info.interfaceType = one.type;
            info.interfaceName = Say(Texts(), one.name);
            info.interfaceHandle = InterfaceHandle(infos.size());
            info.transportLayerHandle = TransportLayerHandle(one.transportLayer);
            infos.push_back(info);
        }
        return infos;
    });
}

std::vector<PxnCameraInfo> ScriptedBackend::ListCameras() {
    return WithModel([&](const Model& model) {
        std::vector<PxnCameraInfo> infos;
        while (infos.size() < model.cameras.size()) {
            infos.push_back(Describe(model, infos.size()));
        }
        return infos;
    });
}

PxnError ScriptedBackend::DescribeCamera(const char* id, PxnCameraInfo& info) {
    return WithModel([&](const Model& model) -> PxnError {
        const std::optional<std::size_t> index = FindCamera(model, id);
        if (!index) {
            return PxnErrNotFound;
        }
        info = Describe(model, *index);
        return PxnErrSuccess;
    });
}

PxnError ScriptedBackend::DescribeCamera(PxnHandle camera, PxnCameraInfo& info) {
    return WithModel([&](Model& model) -> PxnError {
        const std::optional<std::size_t> index = FindPlace(model, camera).camera;
        if (!index) {
            return PxnErrBadHandle;
        }
        info = Describe(model, *index);
        return PxnErrSuccess;
    });
}

PxnCameraInfo ScriptedBackend::Describe(const Model& model, std::size_t index) {
    const Camera& camera = model.cameras[index];
    PxnCameraInfo info{};
    info.cameraIdString = Say(Texts(), camera.id);
    info.cameraIdExtended = Say(Texts(), camera.extendedId);
    info.cameraName = Say(Texts(), camera.name);
    info.modelName = Say(Texts(), camera.modelName);
    info.serialString = Say(Texts(), camera.serial);
    info.permittedAccess = camera.permittedAccess;
    if (camera.interface < model.interfaces.size()) {
        info.interfaceHandle = InterfaceHandle(camera.interface);
        info.transportLayerHandle =
            TransportLayerHandle(model.interfaces[camera.interface].transportLayer);
    }
    platform::MutexLock lock(mutex);
    const CameraState& state = cameras[index];
    if (state.frames) {
        info.localDeviceHandle = LocalDeviceHandle(index);
        info.streamHandles = state.streams.empty() ? nullptr : state.streams.data();
        info.streamCount = Miscount("streams", static_cast<std::uint32_t>(state.streams.size()));
        if (model.nonsense.areStreamsMissing) {
            info.streamHandles = nullptr;
        }
    }
    return info;
}

PxnError ScriptedBackend::OpenCamera(const char* id, std::uint32_t accessMode, PxnHandle& camera) {
    std::vector<PxnHandle> streams;
    const std::optional<std::size_t> index = WithModel([&](const Model& model) {
        const std::optional<std::size_t> found = FindCamera(model, id);
        while (found && streams.size() < model.cameras[*found].streams.size()) {
            streams.push_back(StreamHandle(*found, streams.size()));
        }
        return found;
    });
    if (!index) {
        return PxnErrNotFound;
    }
    const auto frames = std::make_shared<ScriptedFrames>(*index);
    frames->Open(CameraHandle(*index), StreamHandle(*index));
    platform::MutexLock lock(mutex);
    CameraState& state = cameras[*index];
    if (state.frames) {
        return PxnErrInUse;
    }
    state = {frames, std::move(streams), accessMode == PxnAccessModeFull};
    camera = CameraHandle(*index);
    return PxnErrSuccess;
}

PxnError ScriptedBackend::CloseCamera(PxnHandle camera) {
    const std::optional<std::size_t> index =
        WithModel([&](Model& model) { return FindPlace(model, camera).camera; });
    const std::shared_ptr<ScriptedFrames> frames = index ? FramesOf(*index) : nullptr;
    if (!frames) {
        return PxnErrBadHandle;
    }
    frames->Close();
    std::vector<PxnHandle> closed{camera, LocalDeviceHandle(*index)};
    {
        platform::MutexLock lock(mutex);
        CameraState& state = cameras[*index];
        closed.insert(closed.end(), state.streams.begin(), state.streams.end());
        state.frames = nullptr;
        state.isWritable = true;
    }
    for (const PxnHandle handle : closed) {
        Changes().UnregisterAll(handle);
    }
    return PxnErrSuccess;
}

PxnError ScriptedBackend::AccessChunks(const PxnFrame&,
                                       skeleton::FunctionRef<PxnError(PxnHandle)> read) {
    return read(ChunkHandle());
}

void ScriptedBackend::Stop() {
    for (const std::shared_ptr<ScriptedFrames>& frames : ListOpen()) {
        frames->Close();
    }
    Changes().Stop();
}

std::vector<std::shared_ptr<ScriptedFrames>> ScriptedBackend::ListOpen() {
    platform::MutexLock lock(mutex);
    std::vector<std::shared_ptr<ScriptedFrames>> open;
    for (const auto& [index, state] : cameras) {
        if (state.frames) {
            open.push_back(state.frames);
        }
    }
    return open;
}

std::shared_ptr<ScriptedFrames> ScriptedBackend::FramesOf(std::size_t index) {
    platform::MutexLock lock(mutex);
    return cameras[index].frames;
}

class ScriptedImplementation final : public skeleton::Implementation {
public:
    PxnVersionInfo Version() override {
        return WithModel([](const Model& model) { return model.version; });
    }
    PxnError Start(const wchar_t*, std::shared_ptr<skeleton::Backend>& started) override {
        started = std::make_shared<ScriptedBackend>();
        return PxnErrSuccess;
    }
    PxnError OnCall(const skeleton::EntryCall& call) override {
        return SdkState::Instance().BeginCall(call);
    }
    std::uint32_t ReportedCount(const char* entry, std::uint32_t count) override {
        return SdkState::Instance().ReportedCount(entry, count);
    }
};

} // namespace

std::vector<std::shared_ptr<ScriptedFrames>> OpenCameras() {
    const auto backend =
        std::static_pointer_cast<ScriptedBackend>(skeleton::Library::Instance().Current());
    return backend ? backend->ListOpen() : std::vector<std::shared_ptr<ScriptedFrames>>{};
}

} // namespace scripted

skeleton::Implementation& skeleton::TheImplementation() {
    static NeverDestroyed<scripted::ScriptedImplementation> implementation;
    return implementation.Get();
}
