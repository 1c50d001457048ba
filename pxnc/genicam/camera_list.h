// camera_list.h - the cameras that have been found, present and vanished
#pragma once

#include "platform/mutex.h"
#include "pxnc/genicam/camera_search.h"
#include "pxnc/genicam/open_camera.h"
#include "pxnc/genicam/transport_modules.h"
#include "pxnc/skeleton/text_pool.h"

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace genicam {

/// A camera came or went.
struct DiscoveryEvent {
    bool isDetected;
    /// The camera's extended identifier; a text of the pool.
    const char* cameraId;
};

/// Every camera that was ever found, with what is open of it. Any thread.
///
/// A camera is missing when two searches in a row did not find it, since a reply may get lost.
/// A GigE Vision camera that this process controls only goes missing with that control, however
/// busy its network is.
class CameraList {
public:
    CameraList(skeleton::TextPool& textPool, TransportModules& transportModules)
        : texts(textPool), transports(transportModules) {}

    /// Enters what a search found and returns what has changed. `lost` receives the open cameras
    /// that have vanished.
    std::vector<DiscoveryEvent> Merge(const std::vector<FoundCamera>& found,
                                      std::vector<std::shared_ptr<CameraDevice>>& lost);
    /// An open camera has vanished: ends the waits for its frames. Returns the event, or nothing
    /// when the camera is missing already.
    std::optional<DiscoveryEvent> MarkMissing(const std::string& extendedId);

    /// The cameras that are present, in the order in which they were found.
    std::vector<PxnCameraInfo> Present() const;
    /// PxnErrNotFound for a camera that is not present.
    PxnError InfoOf(const char* id, PxnCameraInfo& info) const;
    /// PxnErrBadHandle when no camera is open under the handle.
    PxnError InfoOf(PxnHandle camera, PxnCameraInfo& info) const;

    /// What opening a camera needs to know.
    struct Claim {
        std::string extendedId;
        CameraDevice::Address address;
        CameraIdentity identity;
    };
    /// Reserves a camera for the caller, who opens it and calls SetOpen or Release. `id` is the
    /// plain or the extended identifier. PxnErrNotFound, or PxnErrInUse when it is open already.
    PxnError Reserve(const char* id, Claim& claim);
    void SetOpen(const std::string& extendedId, OpenedCamera open);
    void Release(const std::string& extendedId);
    /// Takes an open camera out for the caller, who closes it and calls Release; false when none is
    /// open under the handle.
    bool TakeOpen(PxnHandle camera, OpenedCamera& open, std::string& extendedId);
    /// The handles of all open cameras.
    std::vector<PxnHandle> OpenHandles() const;
    /// What has been received into `frame`, and the chunk readers of its camera. PxnErrNotFound
    /// for a frame that is announced at no camera, PxnErrNoData for one that was not received.
    PxnError FindReceived(const PxnFrame& frame, std::shared_ptr<ChunkReaders>& readers,
                          ObjectOwner<ArvBuffer>& buffer) const;

private:
    struct Record {
        const char* id = nullptr;
        const char* extendedId = nullptr;
        const char* name = nullptr;
        const char* vendor = nullptr;
        const char* model = nullptr;
        const char* serial = nullptr;
        Protocol protocol = Protocol::kGigEVision;
        std::string network;
        PxnHandle layer = nullptr;
        PxnHandle interfaceHandle = nullptr;
        bool isPresent = true;
        unsigned searchesWithout = 0;
        bool isReserved = false;
        OpenedCamera open;
        // The handle list in the camera's information; addresses in it must stay valid.
        const PxnHandle* streams = nullptr;
    };

    /// The number of records when there is none.
    std::size_t IndexOf(const std::string& id) const REQUIRES(mutex);
    Record* Find(const std::string& id) REQUIRES(mutex);
    const Record* Find(const std::string& id) const REQUIRES(mutex);
    Record* Add(const FoundCamera& found) REQUIRES(mutex);
    static PxnCameraInfo ToInfo(const Record& record);

    skeleton::TextPool& texts;
    TransportModules& transports;
    mutable platform::Mutex mutex;
    // Records never move or go.
    std::deque<Record> records GUARDED_BY(mutex);
    std::deque<PxnHandle> streamHandles GUARDED_BY(mutex);
};

} // namespace genicam
