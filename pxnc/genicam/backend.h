// backend.h - the cameras that Aravis reaches, between the first startup and the last shutdown
#pragma once

#include "platform/event.h"
#include "platform/mutex.h"
#include "platform/thread.h"
#include "pxnc/genicam/camera_list.h"
#include "pxnc/genicam/change_watch.h"
#include "pxnc/genicam/configuration.h"
#include "pxnc/genicam/transport_modules.h"
#include "pxnc/skeleton/backend.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace genicam {

class Backend final : public skeleton::Backend {
public:
    explicit Backend(const Configuration& settings);
    ~Backend() override;

    /// Searches for cameras once, which takes about a second, and starts the threads. False when
    /// the system refused one.
    bool Start();

    std::vector<PxnTransportLayerInfo> ListTransportLayers() override;
    std::vector<PxnInterfaceInfo> ListInterfaces() override;
    std::vector<PxnCameraInfo> ListCameras() override;
    PxnError DescribeCamera(const char* id, PxnCameraInfo& info) override;
    PxnError DescribeCamera(PxnHandle camera, PxnCameraInfo& info) override;
    /// PxnErrInUse for a camera that is open already.
    PxnError OpenCamera(const char* id, std::uint32_t accessMode, PxnHandle& camera) override;
    /// Waits for the calls that still use the camera.
    PxnError CloseCamera(PxnHandle camera) override;
    PxnError AccessChunks(const PxnFrame& frame,
                          skeleton::FunctionRef<PxnError(PxnHandle)> read) override;
    void Stop() override;

private:
    static void SearchMain(void* argument);
    void Search();
    void AddSystemModule();
    void Report(const DiscoveryEvent& event);
    void OnCameraLost(const std::string& extendedId);

    const Configuration configuration;
    ChangeWatch watch;
    TransportModules transports;
    CameraList cameras;

    // The values of the discovery features: the event that is being reported.
    platform::Mutex eventMutex;
    bool hasEvent GUARDED_BY(eventMutex) = false;
    DiscoveryEvent event GUARDED_BY(eventMutex) = {};
    std::int64_t eventCount GUARDED_BY(eventMutex) = 0;

    // Searches exclude each other.
    platform::Mutex searchMutex;
    platform::Event searchStop;
    platform::Thread searchThread;
};

} // namespace genicam
