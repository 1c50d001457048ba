// event_recorder.h - records a grabber's events
#pragma once

#include "platform/event.h"
#include "platform/mutex.h"

#include <cstdint>
#include <functional>
#include <vector>

class CMivoraGrabber;

/// Events since the last call of Take.
struct GrabberEvents {
    std::uint64_t postProcess = 0;
    std::int64_t lastBuffer = -1;
    std::uint64_t camCfgChange = 0;
    std::vector<std::uint32_t> camCntrl; ///< codes in order of arrival
    std::vector<std::uint32_t> dialogs;  ///< masks in order of arrival
};

/// Receives and counts a grabber's callbacks during its lifetime. Callbacks may arrive on any
/// thread; the methods are called by one thread at a time.
class EventRecorder {
public:
    /// Throws std::bad_alloc.
    explicit EventRecorder(CMivoraGrabber& grabberToWatch);
    /// To be called before the grabber is destroyed and after its acquisition has stopped.
    ~EventRecorder();
    EventRecorder(const EventRecorder&) = delete;
    EventRecorder& operator=(const EventRecorder&) = delete;

    /// Returns and clears the recorded events.
    GrabberEvents Take();

    /// Frames handed over since the last ResetFrames.
    std::uint64_t Frames() const;
    void ResetFrames();
    /// Configuration changes since construction.
    std::uint64_t ConfigurationChanges() const;

    /// Waits until `condition` holds, for at most `timeoutMs` milliseconds or until the user
    /// interrupts the program, and returns the condition's last value. The condition is evaluated
    /// with no lock held, after every event and periodically, because not everything that a caller
    /// may wait for raises an event. Handles this thread's window messages meanwhile.
    bool WaitFor(const std::function<bool()>& condition, std::uint64_t timeoutMs);
    /// The same for a condition that becomes true by an event only: without windows to serve, this
    /// thread does not wake up in between but for the user's interruption, ten times a second.
    bool WaitForEvent(const std::function<bool()>& condition, std::uint64_t timeoutMs);

    /// `hook` is called for every frame, on the thread that delivers it, before the frame is
    /// counted. Must not be set during an acquisition.
    void SetFrameHook(std::function<void(std::uint64_t bufferIndex)> hook);

private:
    bool Wait(const std::function<bool()>& condition, std::uint64_t timeoutMs,
              std::uint64_t lookAgainMs);
    void RemoveReceivers();
    static void OnPostProcess(std::uint64_t bufferIndex, std::uint32_t fromCallback, void* self);
    static void OnCamCfgChange(void* self);
    static std::uint32_t OnCamCntrl(std::uint32_t code, void* self);
    static void OnDialogUpdate(std::uint32_t mask, void* self);

    CMivoraGrabber& grabber;
    std::function<void(std::uint64_t)> frameHook;
    platform::Event changed;

    mutable platform::Mutex mutex;
    GrabberEvents events GUARDED_BY(mutex);
    std::uint64_t frames GUARDED_BY(mutex) = 0;
    std::uint64_t configurationChanges GUARDED_BY(mutex) = 0;
};
