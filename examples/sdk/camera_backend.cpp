// camera_backend.cpp - what there is between the first startup and the last shutdown
#include "camera_backend.h"

#include <cstring>
#include <utility>

namespace test_camera {
namespace {

constexpr const char* kId = "TestCamera-1";
constexpr const char* kExtendedId = "TestLayer/TestInterface/TestCamera-1";
constexpr const char* kDiscovery = "/EventControl/EventCameraDiscoveryData";

bool HasId(const char* id) {
    return std::strcmp(id, kId) == 0 || std::strcmp(id, kExtendedId) == 0;
}

std::shared_ptr<FeatureSet> MakeModule(skeleton::Backend& backend, const char* name,
                                       const char* category, const char* text) {
    auto module = std::make_shared<FeatureSet>(backend.Texts(), backend.Changes());
    module->Add<TextFeature>(Description{name, category, "Identifier of the module."}, text);
    return module;
}

} // namespace

CameraBackend::CameraBackend()
    : system(MakeModule(*this, "SystemVendorName", "/SystemInformation", "Example")),
      transportLayer(MakeModule(*this, "TLID", "/TLInformation", "TestLayer")),
      interface(MakeModule(*this, "InterfaceID", "/InterfaceInformation", "TestInterface")),
      camera(std::make_shared<TestCamera>(Texts(), Changes())),
      localDevice(MakeModule(*this, "DeviceID", "/DeviceInformation", kId)),
      stream(std::make_shared<StreamModule>(Texts(), Changes(), camera)) {
    // Hosts follow the first of these to learn of cameras that come and go; this one stays.
    system->Add<DerivedInteger>(
        Description{"EventCameraDiscovery", kDiscovery, "Number of events so far."},
        [] { return 0; });
    system->Add<TextFeature>(
        Description{"EventCameraDiscoveryCameraID", kDiscovery, "Camera of the last event."}, "");
    system->Add<EntryFeature>(
        Description{"EventCameraDiscoveryType", kDiscovery, "Type of the last event."}, Texts(),
        std::vector<EntryFeature::Entry>{{"Detected", 1}, {"Missing", 0}});
}

bool CameraBackend::Start() {
    Handles().Put(PXN_SYSTEM_HANDLE, {system});
    system->SetHandle(PXN_SYSTEM_HANDLE);
    transportLayerHandle = Handles().Add({transportLayer});
    transportLayer->SetHandle(transportLayerHandle);
    interfaceHandle = Handles().Add({interface});
    interface->SetHandle(interfaceHandle);
    return Changes().Start();
}

std::vector<PxnTransportLayerInfo> CameraBackend::ListTransportLayers() {
    return {{"TestLayer", "Test layer", "Test layer", "Example", "1.0.0", "", transportLayerHandle,
             PxnTransportLayerCustom}};
}

std::vector<PxnInterfaceInfo> CameraBackend::ListInterfaces() {
    return {{"TestInterface", PxnTransportLayerCustom, "Test interface", interfaceHandle,
             transportLayerHandle}};
}

std::vector<PxnCameraInfo> CameraBackend::ListCameras() {
    const std::lock_guard<std::mutex> lock(mutex);
    return {Describe()};
}

PxnCameraInfo CameraBackend::Describe() const {
    PxnCameraInfo info{};
    info.cameraIdString = kId;
    info.cameraIdExtended = kExtendedId;
    info.cameraName = "Test camera";
    info.modelName = "Test camera";
    info.serialString = "1";
    info.transportLayerHandle = transportLayerHandle;
    info.interfaceHandle = interfaceHandle;
    if (cameraHandle) {
        info.localDeviceHandle = localDeviceHandle;
        info.streamHandles = &streamHandles.back();
        info.streamCount = 1;
    } else {
        info.permittedAccess = PxnAccessModeFull | PxnAccessModeRead;
    }
    return info;
}

PxnError CameraBackend::DescribeCamera(const char* id, PxnCameraInfo& info) {
    if (!HasId(id)) {
        return PxnErrNotFound;
    }
    const std::lock_guard<std::mutex> lock(mutex);
    info = Describe();
    return PxnErrSuccess;
}

PxnError CameraBackend::DescribeCamera(PxnHandle handle, PxnCameraInfo& info) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (handle != cameraHandle) {
        return PxnErrBadHandle;
    }
    info = Describe();
    return PxnErrSuccess;
}

PxnHandle CameraBackend::AddModule(const std::shared_ptr<FeatureSet>& module, bool hasFrames,
                                   std::uint32_t accessMode, bool isCamera) {
    skeleton::Target target{module};
    target.frames = hasFrames ? camera->Frames() : nullptr;
    target.isCamera = isCamera;
    target.isWritable = accessMode == PxnAccessModeFull;
    const PxnHandle handle = Handles().Add(std::move(target));
    module->SetHandle(handle);
    return handle;
}

PxnError CameraBackend::OpenCamera(const char* id, std::uint32_t accessMode, PxnHandle& handle) {
    if (!HasId(id)) {
        return PxnErrNotFound;
    }
    const std::lock_guard<std::mutex> lock(mutex);
    if (cameraHandle) {
        return PxnErrInUse;
    }
    cameraHandle = AddModule(camera, true, accessMode, true);
    localDeviceHandle = AddModule(localDevice, false, accessMode, false);
    streamHandles.push_back(AddModule(stream, true, accessMode, false));
    camera->Frames()->Open(cameraHandle, streamHandles.back());
    handle = cameraHandle;
    return PxnErrSuccess;
}

PxnError CameraBackend::CloseCamera(PxnHandle handle) {
    // Of two calls with this handle, one closes. Until it has done so the camera stays taken.
    if (!Handles().Remove(handle)) {
        return PxnErrBadHandle;
    }
    camera->Frames()->StopCamera();
    camera->Frames()->Close();
    std::vector<PxnHandle> gone{handle};
    {
        const std::lock_guard<std::mutex> lock(mutex);
        gone.push_back(localDeviceHandle);
        gone.push_back(streamHandles.back());
        Handles().Remove(localDeviceHandle);
        Handles().Remove(streamHandles.back());
        cameraHandle = nullptr;
    }
    for (const PxnHandle one : gone) {
        Changes().UnregisterAll(one);
    }
    return PxnErrSuccess;
}

PxnError CameraBackend::AccessChunks(const PxnFrame& frame,
                                     skeleton::FunctionRef<PxnError(PxnHandle)>) {
    return camera->Frames()->ChunksOf(frame);
}

void CameraBackend::Stop() {
    PxnHandle open = nullptr;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        open = cameraHandle;
    }
    if (open) {
        CloseCamera(open);
    }
    Changes().Stop();
}

} // namespace test_camera
