// simulator.h - everything that lives from the first startup to the last shutdown
#pragma once

#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/configuration.h"
#include "pxnc/simulator/delayed_commands.h"
#include "pxnc/simulator/system_modules.h"
#include "pxnc/skeleton/backend.h"

#include <memory>
#include <string>
#include <vector>

namespace pxsim {

/// The modules of one run. The lists are fixed once it is started; any thread may use them.
class Simulator : public skeleton::Backend, public FrameScheduler {
public:
    explicit Simulator(const Configuration& configuration);
    ~Simulator() override;
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    /// Starts the event thread and creates the handles of the upper modules.
    bool Start();

    std::vector<PxnTransportLayerInfo> ListTransportLayers() override;
    std::vector<PxnInterfaceInfo> ListInterfaces() override;
    std::vector<PxnCameraInfo> ListCameras() override;
    PxnError DescribeCamera(const char* id, PxnCameraInfo& info) override;
    PxnError DescribeCamera(PxnHandle camera, PxnCameraInfo& info) override;
    PxnError OpenCamera(const char* id, std::uint32_t accessMode, PxnHandle& camera) override;
    PxnError CloseCamera(PxnHandle camera) override;
    PxnError AccessChunks(const PxnFrame& frame,
                          skeleton::FunctionRef<PxnError(PxnHandle)> read) override;
    /// What was not released is reported on standard error.
    void Stop() override;

    DelayedCommands& Delayed() { return delayed; }
    const std::vector<std::unique_ptr<Camera>>& Cameras() const { return cameras; }
    const Configuration& Setup() const { return configuration; }
    /// By plain or extended identifier, plugged or not; null when there is none.
    Camera* FindCamera(const std::string& id) const;

    /// Plugs or unplugs a camera and raises the discovery event; false when nothing changes.
    bool SetPlugged(Camera& camera, bool plugged);
    /// Raises a discovery event of another kind.
    void RaiseCameraEvent(const char* type, const Camera& camera);
    /// False when there is no such interface.
    bool RaiseInterfaceEvent(const char* type, const std::string& interfaceId);
    std::string LeakReport();
    /// The first setting that a camera cannot apply, or null.
    const Setting* FirstProblem() const;

    // FrameScheduler
    void OnScheduledFrame(Camera& sender, std::uint64_t frameId) override;

private:
    /// Null when the handle does not belong to a camera.
    Camera* CameraOf(PxnHandle handle);
    bool FindPayload(const PxnFrame& frame, std::uint32_t& payload) const;
    void EndThreads();

    const Configuration configuration;
    SystemModule system;
    std::vector<std::unique_ptr<TransportLayer>> layers;
    std::vector<std::unique_ptr<Interface>> interfaces;
    std::vector<std::unique_ptr<Camera>> cameras;
    DelayedCommands delayed;
};

} // namespace pxsim
