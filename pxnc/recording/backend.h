// backend.h - the camera of a recording, between the first startup and the last shutdown
#pragma once

#include "platform/mutex.h"
#include "pxnc/recording/recorded_camera.h"
#include "pxnc/skeleton/backend.h"

#include <list>
#include <memory>
#include <vector>

namespace playback {

/// One transport layer with one interface with one camera, which one handle at a time has open.
class Backend final : public skeleton::Backend {
public:
    explicit Backend(std::shared_ptr<const Recording> played);
    ~Backend() override;

    /// False when there are no resources for it.
    bool Start() { return Changes().Start(); }

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
    /// The camera while it is open.
    struct Opened {
        PxnHandle camera = nullptr;
        PxnHandle localDevice = nullptr;
        PxnHandle stream = nullptr;
        std::shared_ptr<FramePlayer> player;
    };

    bool HasId(const char* id) const { return names.id == id || names.extendedId == id; }
    PxnCameraInfo Describe() REQUIRES(mutex);
    PxnHandle AddFixedModule(const std::shared_ptr<PlaybackModule>& module);

    const std::shared_ptr<const Recording> recording;
    const CameraNames names;
    const PxnHandle transportLayer;
    const PxnHandle interface;

    platform::Mutex mutex; // not held while callbacks are waited for
    Opened opened GUARDED_BY(mutex);
    bool isTaken GUARDED_BY(mutex) = false;               // until closing has ended
    std::list<PxnHandle> streamHandles GUARDED_BY(mutex); // hosts have pointers to them
};

} // namespace playback
