// library.h - everything between the first startup and the last shutdown
#pragma once

#include "platform/event.h"
#include "platform/mutex.h"
#include "platform/thread.h"
#include "pxnc/genicam/camera_list.h"
#include "pxnc/genicam/configuration.h"
#include "pxnc/genicam/handle_table.h"
#include "pxnc/genicam/invalidation.h"
#include "pxnc/genicam/text_pool.h"
#include "pxnc/genicam/transport_modules.h"

#include <memory>
#include <string>
#include <vector>

namespace genicam {

/// The started library. Entry points hold on to it while they run, so that a shutdown on another
/// thread does not pull it away.
class Library {
public:
    /// Counts a startup and, for the first one, makes the library: reads the configuration and
    /// searches for cameras once, which takes about a second. A failed startup does not count.
    /// PxnErrInvalidCall inside a callback.
    static PxnError Start(const wchar_t* configPath);
    /// Counts a shutdown; the last one closes what is open and waits for all threads. Does nothing
    /// without a startup, and nothing inside a callback, which would have to wait for itself.
    static void Stop();
    /// The started library, or null.
    static std::shared_ptr<Library> Current();

    explicit Library(const Configuration& settings);
    ~Library();

    TextPool& Texts() { return texts; }
    HandleTable& Handles() { return handles; }
    Invalidation& Changes() { return *invalidation; }
    TransportModules& Transports() { return *transports; }
    CameraList& Cameras() { return *cameras; }

    /// PxnErrInUse for a camera that is open already.
    PxnError OpenCameraById(const char* id, uint32_t accessMode, PxnHandle& camera);
    /// Waits for the calls that still use the camera; PxnErrInvalidCall inside a callback.
    PxnError CloseCamera(PxnHandle camera);

private:
    static void SearchMain(void* argument);
    void Search();
    void AddSystemModule();
    void Report(const DiscoveryEvent& event);
    void OnCameraLost(const std::string& extendedId);
    void CloseEverything();

    const Configuration configuration;
    TextPool texts;
    HandleTable handles;
    std::unique_ptr<Invalidation> invalidation;
    std::unique_ptr<TransportModules> transports;
    std::unique_ptr<CameraList> cameras;

    // What the discovery features answer: the event that is being reported.
    platform::Mutex eventMutex;
    bool hasEvent GUARDED_BY(eventMutex) = false;
    DiscoveryEvent event GUARDED_BY(eventMutex) = {};
    int64_t eventCount GUARDED_BY(eventMutex) = 0;

    // Searches exclude each other.
    platform::Mutex searchMutex;
    platform::Event searchStop;
    platform::Thread searchThread;
};

} // namespace genicam
