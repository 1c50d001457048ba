// camera_backend.h - what there is between the first startup and the last shutdown
#pragma once

#include "pxnc/skeleton/backend.h"
#include "test_camera.h"

#include <list>
#include <memory>
#include <mutex>
#include <vector>

namespace test_camera {

/// One transport layer with one interface with one camera, which one handle at a time has open.
class CameraBackend final : public skeleton::Backend {
public:
    CameraBackend();

    /// False when there are no resources for it.
    bool Start();

    std::vector<PxnTransportLayerInfo> ListTransportLayers() override;
    std::vector<PxnInterfaceInfo> ListInterfaces() override;
    std::vector<PxnCameraInfo> ListCameras() override;
    PxnError DescribeCamera(const char* id, PxnCameraInfo& info) override;
    PxnError DescribeCamera(PxnHandle handle, PxnCameraInfo& info) override;
    PxnError OpenCamera(const char* id, std::uint32_t accessMode, PxnHandle& handle) override;
    PxnError CloseCamera(PxnHandle handle) override;
    PxnError AccessChunks(const PxnFrame& frame,
                          skeleton::FunctionRef<PxnError(PxnHandle)> read) override;
    void Stop() override;

private:
    PxnCameraInfo Describe() const;
    /// A module that belongs to the open camera, with its frames if `hasFrames`.
    PxnHandle AddModule(const std::shared_ptr<FeatureSet>& module, bool hasFrames,
                        std::uint32_t accessMode, bool isCamera);

    const std::shared_ptr<FeatureSet> system;
    const std::shared_ptr<FeatureSet> transportLayer;
    const std::shared_ptr<FeatureSet> interface;
    const std::shared_ptr<TestCamera> camera;
    const std::shared_ptr<FeatureSet> localDevice;
    const std::shared_ptr<StreamModule> stream;
    PxnHandle transportLayerHandle = nullptr; // set by Start, as is the next one
    PxnHandle interfaceHandle = nullptr;

    mutable std::mutex mutex; // guards what follows; not held while callbacks are waited for
    PxnHandle cameraHandle = nullptr; // null while the camera is closed
    PxnHandle localDeviceHandle = nullptr;
    std::list<PxnHandle> streamHandles; // the last one is valid; hosts have pointers to them
};

} // namespace test_camera
