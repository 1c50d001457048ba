// backend.cpp - the cameras that Aravis reaches, between the first startup and the last shutdown
#include "pxnc/genicam/backend.h"

#include "pxnc/genicam/feature.h"

#include <limits>
#include <utility>

namespace genicam {
namespace {

constexpr char kDiscovery[] = "EventCameraDiscovery";
constexpr char kDiscoveryType[] = "EventCameraDiscoveryType";
constexpr char kDiscoveryCamera[] = "EventCameraDiscoveryCameraID";
constexpr std::int64_t kMissing = 0;
constexpr std::int64_t kDetected = 1;

/// Releases the claim on a camera unless opening it succeeds.
class ClaimGuard {
public:
    ClaimGuard(CameraList& cameraList, const std::string& cameraId)
        : cameras(cameraList), id(cameraId) {}
    ~ClaimGuard() {
        if (!isKept) {
            cameras.Release(id);
        }
    }
    ClaimGuard(const ClaimGuard&) = delete;
    ClaimGuard& operator=(const ClaimGuard&) = delete;

    void Keep() { isKept = true; }

private:
    CameraList& cameras;
    const std::string& id;
    bool isKept = false;
};

class SystemModule : public Module {
public:
    SystemModule(skeleton::Backend& backendOfModule, Features moduleFeatures)
        : FeatureModule(std::move(moduleFeatures)), backend(backendOfModule) {}

    void OnWritten(const char* name) override {
        backend.Changes().Post(PXN_SYSTEM_HANDLE, backend.Texts().Intern(name));
    }

private:
    skeleton::Backend& backend;
};

} // namespace

Backend::Backend(const Configuration& settings)
    : configuration(settings),
      watch(*this),
      transports(Texts(), Handles(), configuration),
      cameras(Texts(), transports) {
    EnableUsbSearch(configuration.usbEnabled);
    AddSystemModule();
}

Backend::~Backend() {
    Backend::Stop();
}

bool Backend::Start() {
    if (!Changes().Start()) {
        return false;
    }
    // Cameras that are there from the start are no events.
    std::vector<std::shared_ptr<CameraDevice>> lost;
    cameras.Merge(SearchCameras(), lost);
    searchThread = platform::Thread::Start(SearchMain, this, 0);
    return searchThread.IsJoinable();
}

void Backend::Stop() {
    searchStop.Set();
    searchThread.Join();
    for (const PxnHandle camera : cameras.OpenHandles()) {
        Backend::CloseCamera(camera);
    }
    Changes().Stop();
    Handles().Clear();
}

void Backend::AddSystemModule() {
    constexpr char kInformation[] = "/SystemInformation";
    constexpr char kEvents[] = "/EventControl";
    Module::Features features;
    LocalFeatures add(Texts(), features);
    add.AddText({"SystemVendorName", kInformation, "Vendor Name", "Maker of this library."},
                "Korvane");
    add.AddText({"SystemModelName", kInformation, "Model Name", "Name of this library."},
                "Pyxen GenICam");
    add.AddInt({"DiscoveryInterval", kInformation, "Discovery Interval",
                "Time between two searches for cameras.", PxnVisibilityExpert, "ms"},
               {1, std::numeric_limits<std::uint32_t>::max(), 1}, [this](std::int64_t& value) {
                   value = configuration.pollMs;
                   return PxnErrSuccess;
               });
    add.AddCommand({"DiscoverCameras", kInformation, "Discover Cameras",
                    "Searches for cameras now; takes about a second."},
                   [this] {
                       Search();
                       return PxnErrSuccess;
                   });
    add.AddInt({kDiscovery, kEvents, "Camera Discovery",
                "Number of cameras that came or went; changes with each."},
               {0, std::numeric_limits<std::int64_t>::max(), 1}, [this](std::int64_t& value) {
                   const platform::MutexLock lock(eventMutex);
                   value = eventCount;
                   return PxnErrSuccess;
               });
    add.AddEnum({kDiscoveryType, kEvents, "Camera Discovery Type",
                 "Whether the camera came or went; unreadable before the first event."},
                {{"Missing", kMissing}, {"Detected", kDetected}},
                [this](std::int64_t& value) -> PxnError {
                    const platform::MutexLock lock(eventMutex);
                    value = event.isDetected ? kDetected : kMissing;
                    return hasEvent ? PxnErrSuccess : PxnErrInvalidAccess;
                });
    add.AddText({kDiscoveryCamera, kEvents, "Camera Discovery Camera",
                 "Extended identifier of the camera that came or went."},
                [this](std::string& text) {
                    const platform::MutexLock lock(eventMutex);
                    text = hasEvent ? event.cameraId : "";
                    return PxnErrSuccess;
                });
    Handles().Put(PXN_SYSTEM_HANDLE, {std::make_shared<SystemModule>(*this, std::move(features))});
}

void Backend::SearchMain(void* argument) {
    auto& self = *static_cast<Backend*>(argument);
    while (!self.searchStop.Wait(self.configuration.pollMs)) {
        self.Search();
    }
}

void Backend::Search() {
    std::vector<std::shared_ptr<CameraDevice>> lost;
    std::vector<DiscoveryEvent> events;
    {
        const platform::MutexLock lock(searchMutex);
        events = cameras.Merge(SearchCameras(), lost);
    }
    for (const DiscoveryEvent& happened : events) {
        Report(happened);
    }
    for (const auto& device : lost) {
        device->MarkLost();
    }
}

void Backend::Report(const DiscoveryEvent& happened) {
    Changes().PostWork(PXN_SYSTEM_HANDLE, [this, happened]() -> std::vector<const char*> {
        const platform::MutexLock lock(eventMutex);
        event = happened;
        hasEvent = true;
        ++eventCount;
        return {Texts().Intern(kDiscovery), Texts().Intern(kDiscoveryType),
                Texts().Intern(kDiscoveryCamera)};
    });
}

void Backend::OnCameraLost(const std::string& extendedId) {
    if (const auto happened = cameras.MarkMissing(extendedId)) {
        Report(*happened);
    }
}

std::vector<PxnTransportLayerInfo> Backend::ListTransportLayers() {
    return transports.Layers();
}

std::vector<PxnInterfaceInfo> Backend::ListInterfaces() {
    return transports.Interfaces();
}

std::vector<PxnCameraInfo> Backend::ListCameras() {
    return cameras.Present();
}

PxnError Backend::DescribeCamera(const char* id, PxnCameraInfo& info) {
    return cameras.InfoOf(id, info);
}

PxnError Backend::DescribeCamera(PxnHandle camera, PxnCameraInfo& info) {
    return cameras.InfoOf(camera, info);
}

PxnError Backend::OpenCamera(const char* id, std::uint32_t accessMode, PxnHandle& camera) {
    CameraList::Claim claim;
    if (const PxnError refused = cameras.Reserve(id, claim)) {
        return refused;
    }
    ClaimGuard guard(cameras, claim.extendedId);
    std::shared_ptr<CameraDevice> device;
    if (const PxnError failed = CameraDevice::Open(
            claim.address, accessMode, configuration,
            [this, extendedId = claim.extendedId] { OnCameraLost(extendedId); }, device)) {
        return failed;
    }
    auto frames = std::make_shared<FrameStream>(device, configuration.packetResend);
    if (!frames->Start()) {
        return PxnErrResources;
    }
    OpenedCamera opened = AddCameraModules(*this, watch, device, frames, claim.identity);
    camera = opened.camera;
    cameras.SetOpen(claim.extendedId, std::move(opened));
    guard.Keep();
    if (device->IsLost()) {
        // It vanished before it was known which camera it was.
        OnCameraLost(claim.extendedId);
    }
    return PxnErrSuccess;
}

PxnError Backend::CloseCamera(PxnHandle camera) {
    OpenedCamera opened;
    std::string extendedId;
    if (!cameras.TakeOpen(camera, opened, extendedId)) {
        return PxnErrBadHandle;
    }
    for (const PxnHandle handle : {opened.camera, opened.localDevice, opened.stream}) {
        Handles().Remove(handle);
        Changes().UnregisterAll(handle);
        watch.Forget(handle);
    }
    if (opened.frames->IsCapturing()) {
        opened.device->StopAcquisition();
    }
    opened.frames->Close();
    // A call that still runs keeps the camera; its control is free only afterwards.
    const std::shared_ptr<platform::Event> released = opened.device->Released();
    opened = {};
    released->Wait(platform::kInfinite);
    cameras.Release(extendedId);
    return PxnErrSuccess;
}

PxnError Backend::AccessChunks(const PxnFrame& frame,
                               skeleton::FunctionRef<PxnError(PxnHandle)> read) {
    std::shared_ptr<ChunkReaders> readers;
    ObjectOwner<ArvBuffer> buffer;
    const PxnError result = cameras.FindReceived(frame, readers, buffer);
    return result == PxnErrSuccess ? readers->Read(buffer.get(), read) : result;
}

} // namespace genicam
