#include "pxnc/genicam/library.h"

#include "pxnc/genicam/callback_scope.h"
#include "pxnc/genicam/local_feature.h"

#include <arv.h>
#include <cstddef>
#include <new>
#include <utility>

namespace genicam {

namespace {

constexpr char kDiscovery[] = "EventCameraDiscovery";
constexpr char kDiscoveryType[] = "EventCameraDiscoveryType";
constexpr char kDiscoveryCamera[] = "EventCameraDiscoveryCameraID";
constexpr int64_t kMissing = 0;
constexpr int64_t kDetected = 1;

struct Started {
    // Startups and shutdowns exclude each other; taken before `mutex`.
    platform::Mutex sequence;
    unsigned count GUARDED_BY(sequence) = 0;
    platform::Mutex mutex;
    std::shared_ptr<Library> library GUARDED_BY(mutex);
};

/// Never destroyed: a host that ends without a shutdown leaves threads behind, which must not find
/// this gone, nor should its end wait for them.
Started& TheStarted() {
    alignas(Started) static std::byte storage[sizeof(Started)];
    static Started* const started = new (storage) Started;
    return *started;
}

/// Gives a claim on a camera back unless opening it succeeds.
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

} // namespace

PxnError Library::Start(const wchar_t* configPath) {
    if (CallbackScope::CurrentKind() != CallbackScope::Kind::None) {
        return PxnErrInvalidCall;
    }
    Started& started = TheStarted();
    const platform::MutexLock sequenceLock(started.sequence);
    if (started.count > 0) {
        ++started.count;
        return PxnErrSuccess;
    }
    Configuration configuration;
    if (const PxnError failed = configuration.Load(configPath)) {
        return failed;
    }
    auto library = std::make_shared<Library>(configuration);
    ++started.count;
    const platform::MutexLock lock(started.mutex);
    started.library = std::move(library);
    return PxnErrSuccess;
}

void Library::Stop() {
    if (CallbackScope::CurrentKind() != CallbackScope::Kind::None) {
        return;
    }
    Started& started = TheStarted();
    const platform::MutexLock sequenceLock(started.sequence);
    if (started.count == 0 || --started.count > 0) {
        return;
    }
    std::shared_ptr<Library> library;
    {
        const platform::MutexLock lock(started.mutex);
        library = std::move(started.library);
    }
    library->CloseEverything();
}

std::shared_ptr<Library> Library::Current() {
    Started& started = TheStarted();
    const platform::MutexLock lock(started.mutex);
    return started.library;
}

Library::Library(const Configuration& settings)
    : configuration(settings),
      invalidation(std::make_unique<Invalidation>()),
      transports(std::make_unique<TransportModules>(texts, handles, configuration)),
      cameras(std::make_unique<CameraList>(texts, *transports)) {
    EnableUsbSearch(configuration.usbEnabled);
    AddSystemModule();
    // Cameras that are there from the start are no events.
    std::vector<std::shared_ptr<CameraDevice>> lost;
    cameras->Merge(SearchCameras(), lost);
    searchThread = platform::Thread::Start(SearchMain, this, 0);
}

Library::~Library() {
    CloseEverything();
}

void Library::CloseEverything() {
    searchStop.Set();
    searchThread.Join();
    for (const PxnHandle camera : cameras->OpenHandles()) {
        CloseCamera(camera);
    }
    invalidation->Stop();
    handles.Clear();
}

void Library::AddSystemModule() {
    constexpr char kInformation[] = "/SystemInformation";
    constexpr char kEvents[] = "/EventControl";
    Module::Features features;
    LocalFeatures add(texts, features);
    add.AddText({"SystemVendorName", kInformation, "Vendor Name", "Maker of this library."},
                "Korvane");
    add.AddText({"SystemModelName", kInformation, "Model Name", "Name of this library."},
                "Pyxen GenICam");
    add.AddInt({"DiscoveryInterval", kInformation, "Discovery Interval",
                "Time between two searches for cameras.", PxnVisibilityExpert, "ms"},
               {1, G_MAXUINT32, 1}, [this](int64_t& value) {
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
               {0, G_MAXINT64, 1}, [this](int64_t& value) {
                   const platform::MutexLock lock(eventMutex);
                   value = eventCount;
                   return PxnErrSuccess;
               });
    add.AddEnum({kDiscoveryType, kEvents, "Camera Discovery Type",
                 "Whether the camera came or went; unreadable before the first event."},
                {{"Missing", kMissing}, {"Detected", kDetected}},
                [this](int64_t& value) -> PxnError {
                    const platform::MutexLock lock(eventMutex);
                    value = event.isDetected ? kDetected : kMissing;
                    return hasEvent ? PxnErrSuccess : PxnErrNotAvailable;
                });
    add.AddText({kDiscoveryCamera, kEvents, "Camera Discovery Camera",
                 "Extended identifier of the camera that came or went."},
                [this](std::string& text) {
                    const platform::MutexLock lock(eventMutex);
                    text = hasEvent ? event.cameraId : "";
                    return PxnErrSuccess;
                });
    handles.Add(std::make_shared<Module>(PXN_SYSTEM_HANDLE, std::make_shared<platform::Mutex>(),
                                         std::move(features)));
}

void Library::SearchMain(void* argument) {
    auto& self = *static_cast<Library*>(argument);
    while (!self.searchStop.Wait(self.configuration.pollMs)) {
        self.Search();
    }
}

void Library::Search() {
    std::vector<std::shared_ptr<CameraDevice>> lost;
    std::vector<DiscoveryEvent> events;
    {
        const platform::MutexLock lock(searchMutex);
        events = cameras->Merge(SearchCameras(), lost);
    }
    for (const DiscoveryEvent& happened : events) {
        Report(happened);
    }
    for (const auto& device : lost) {
        device->MarkLost();
    }
}

void Library::Report(const DiscoveryEvent& happened) {
    invalidation->ReportEvent(PXN_SYSTEM_HANDLE, {kDiscovery, kDiscoveryType, kDiscoveryCamera},
                              [this, happened] {
                                  const platform::MutexLock lock(eventMutex);
                                  event = happened;
                                  hasEvent = true;
                                  ++eventCount;
                              });
}

void Library::OnCameraLost(const std::string& extendedId) {
    if (const std::shared_ptr<FrameStream> frames = cameras->FramesOf(extendedId)) {
        frames->OnCameraLost();
    }
    if (const auto happened = cameras->MarkMissing(extendedId)) {
        Report(*happened);
    }
}

PxnError Library::OpenCameraById(const char* id, uint32_t accessMode, PxnHandle& camera) {
    CameraList::Claim claim;
    if (const PxnError refused = cameras->Reserve(id, claim)) {
        return refused;
    }
    ClaimGuard guard(*cameras, claim.extendedId);
    std::shared_ptr<CameraDevice> device;
    if (const PxnError failed = CameraDevice::Open(
            claim.address, accessMode, configuration,
            [this, extendedId = claim.extendedId] { OnCameraLost(extendedId); }, device)) {
        return failed;
    }
    OpenCamera open = AddCameraModules(texts, handles, std::move(device), claim.identity,
                                       configuration.packetResend);
    camera = open.camera;
    const std::shared_ptr<CameraDevice> opened = open.device;
    cameras->SetOpen(claim.extendedId, std::move(open));
    guard.Keep();
    if (opened->IsLost()) {
        // It went before anybody could know whose it was.
        OnCameraLost(claim.extendedId);
    }
    return PxnErrSuccess;
}

PxnError Library::CloseCamera(PxnHandle camera) {
    if (CallbackScope::CurrentKind() != CallbackScope::Kind::None) {
        return PxnErrInvalidCall;
    }
    OpenCamera open;
    std::string extendedId;
    if (!cameras->TakeOpen(camera, open, extendedId)) {
        return PxnErrBadHandle;
    }
    for (const PxnHandle handle : {open.camera, open.localDevice, open.stream}) {
        handles.Remove(handle);
        invalidation->UnregisterAll(handle);
    }
    if (open.frames->GetStatistics().isCapturing) {
        open.device->StopAcquisition();
    }
    open.frames->Close();
    // Whoever is still inside a call keeps the camera; its control is free only afterwards.
    const std::shared_ptr<platform::Event> released = open.device->Released();
    open = {};
    released->Wait(platform::kInfinite);
    cameras->Release(extendedId);
    return PxnErrSuccess;
}

} // namespace genicam
