// camera.h - a virtual camera: its features, its local device and its streams
#pragma once

#include "pxnc/simulator/camera_events.h"
#include "pxnc/simulator/chunk_data.h"
#include "pxnc/simulator/configuration.h"
#include "pxnc/simulator/module.h"
#include "pxnc/simulator/register_space.h"
#include "pxnc/simulator/stream.h"
#include "pxnc/simulator/user_sets.h"
#include "pxnc/skeleton/handle_table.h"

#include <atomic>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace pxsim {

/// What the cameras of one run share.
struct SharedServices {
    skeleton::TextPool& strings;
    skeleton::Invalidations& events;
    skeleton::HandleTable& handles;
};

/// Runs what is scheduled for a frame; implemented by the simulator.
class FrameScheduler {
public:
    virtual ~FrameScheduler() = default;
    virtual void OnScheduledFrame(Camera& sender, std::uint64_t frameId) = 0;
};

/// The remote device with everything behind it.
///
/// Lives from startup to shutdown; being plugged and being open are states. The module mutex
/// guards them and the feature values of all its modules. Opening and closing are serialised by
/// `openCloseMutex`, which is held while waiting for frame callbacks: they never take it, because
/// opening and closing are refused inside them.
class Camera : public Module, public AcquisitionOwner {
public:
    Camera(const CameraConfiguration& setup, const InterfaceConfiguration& interface,
           const SharedServices& services, FrameScheduler& scheduler);
    ~Camera() override;

    const CameraConfiguration& Setup() const { return setup; }
    /// Settings that this camera cannot apply, with line and reason. Empty when there are none.
    const std::vector<Setting>& SetupProblems() const { return setupProblems; }
    std::uint32_t InterfaceType() const { return interfaceType; }
    /// Where the camera is connected; set once by the simulator.
    void SetTopology(PxnHandle transportLayer, PxnHandle interface);
    bool HasId(const char* id) const;
    const char* ExtendedId() const { return extendedId; }

    PxnError Open(std::uint32_t accessMode, PxnHandle* handle) EXCLUDES(openCloseMutex, mutex);
    PxnError GetPayloadSize(std::uint32_t& bytes) override;
    PxnError ReadMemory(std::uint64_t address, char* buffer, std::uint32_t size,
                        std::uint32_t& done) override;
    PxnError WriteMemory(std::uint64_t address, const char* bytes, std::uint32_t size,
                         std::uint32_t& done) override;
    /// The access of the locked features has changed.
    void OnCaptureChanged() override;

    /// `handle` belongs to this camera, which may have been unplugged since.
    void Close(PxnHandle handle) EXCLUDES(openCloseMutex, mutex);
    void FillInfo(PxnCameraInfo& info) const EXCLUDES(mutex);
    void SetPermittedAccess(std::uint32_t access) EXCLUDES(mutex);
    bool IsPlugged() const EXCLUDES(mutex);
    /// False when nothing changes. Unplugging invalidates the handles and ends every wait.
    bool Plug() EXCLUDES(mutex);
    bool Unplug() EXCLUDES(mutex);
    std::size_t OpenHandleCount() const EXCLUDES(mutex);
    /// How often the camera has been opened and closed.
    std::uint64_t OpenedCount() const { return openedCount; }
    std::uint64_t ClosedCount() const { return closedCount; }

    /// Ends the acquisition and the capture of all streams and revokes their frames.
    void CloseEngines();
    Module& LocalDevice() { return *localDevice; }
    RegisterSpace& Registers() { return registers; }
    std::vector<std::unique_ptr<Stream>>& Streams() { return streams; }

    // What the features do.
    PxnError StartAcquisition();
    PxnError StopAcquisition();
    PxnError SoftwareTrigger();
    /// A pulse on a hardware line, from the control interface.
    PxnError LineTrigger();
    /// Applies changes to a running acquisition.
    void UpdatePlan();
    /// Moves and shrinks the region until it fits on the sensor.
    void FitRegion();
    /// Lowers the frame rate to what exposure, readout and link allow.
    void LimitFrameRate();
    void UpdateEventMask();
    void RaiseEvent(CameraEvent event, std::uint64_t frameId);
    void SaveUserSet(std::size_t index);
    void LoadUserSet(std::size_t index);
    ImageSetup CurrentImage() const;
    std::uint32_t EnabledChunkMask() const;
    std::uint32_t ChunkBytes() const;
    std::int64_t LinkBytesPerSecond() const;
    std::int64_t SentFrames() const { return static_cast<std::int64_t>(sentFrames.load()); }
    std::int64_t PayloadBytes() const;
    std::int64_t FramePeriodNs() const;
    bool IsAcquiring() const { return acquiring; }
    bool IsStreaming() const override;
    /// All features back to their values at power-on.
    void ResetFeatures();

    // AcquisitionOwner
    void OnAcquisitionFinished() override;
    void OnScheduledFrame(std::uint64_t frameId) override;
    void OnFrameSent(std::uint64_t frameId) override;
    void WriteChunks(const PxnFrame& frame, std::uint8_t* out, std::uint32_t bytes) override;
    std::uint64_t Timestamp() const override;

private:
    struct Session {
        PxnHandle handle;
        std::uint32_t accessMode;
    };

    void AddFeatures();
    void ApplySetup();
    PxnError ApplyInitialValue(const Setting& setting);
    AcquisitionPlan MakePlan() const;
    bool IsOpen() const REQUIRES(mutex) { return !sessions.empty(); }
    bool IsOpenInFull() const REQUIRES(mutex);
    PxnError CheckAccess(std::uint32_t accessMode) const REQUIRES(mutex);
    void CreateChildHandles() REQUIRES(mutex);
    skeleton::Target MakeTarget(skeleton::Module& module, Stream* stream) REQUIRES(mutex);
    void RemoveChildHandles() REQUIRES(mutex);

    const CameraConfiguration setup;
    std::vector<Setting> setupProblems; // filled by the constructor
    const std::uint32_t interfaceType;
    SharedServices services;
    FrameScheduler& scheduler;
    const char* const id;
    const char* const extendedId;
    const char* const name;
    const char* const model;
    const char* const serial;
    const skeleton::Clock::time_point powerOn;
    PxnHandle transportLayerHandle = nullptr;
    PxnHandle interfaceHandle = nullptr;
    RegisterSpace registers;
    std::unique_ptr<Module> localDevice;
    std::vector<std::unique_ptr<Stream>> streams;
    std::atomic<bool> acquiring = false;
    std::atomic<std::uint64_t> sentFrames = 0;
    std::atomic<std::uint64_t> openedCount = 0;
    std::atomic<std::uint64_t> closedCount = 0;
    std::atomic<unsigned> eventMask = 0; // one bit for each CameraEvent that is reported

    mutable platform::Mutex openCloseMutex; // taken before the module mutex
    UserSets userSets GUARDED_BY(mutex){4};
    bool plugged GUARDED_BY(mutex) = true;
    std::uint32_t permittedAccess GUARDED_BY(mutex);
    std::vector<Session> sessions GUARDED_BY(mutex);
    // Set when the camera is unplugged; shared by the handles made while it was plugged.
    std::shared_ptr<std::atomic<bool>> vanished GUARDED_BY(mutex);
    std::vector<PxnHandle> vanishedHandles GUARDED_BY(mutex); // not closed yet
    std::vector<PxnHandle> vanishedChildren GUARDED_BY(mutex);
    PxnHandle localDeviceHandle GUARDED_BY(mutex) = nullptr;
    // Camera records point to the list of their opening, so the lists live until shutdown.
    std::deque<std::vector<PxnHandle>> streamHandleLists GUARDED_BY(mutex);
};

} // namespace pxsim
