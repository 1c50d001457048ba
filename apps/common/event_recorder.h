// event_recorder.h - what a grabber told its host
#pragma once

#include "platform/event.h"
#include "platform/mutex.h"

#include <cstdint>
#include <functional>
#include <vector>

class CMivoraGrabber;

/// What came since the last look.
struct GrabberEvents {
    std::uint64_t postProcess = 0;
    std::int64_t lastBuffer = -1;
    std::uint64_t camCfgChange = 0;
    std::vector<std::uint32_t> camCntrl; ///< codes in order
    std::vector<std::uint32_t> dialogs;  ///< masks in order
};

/// Receives a grabber's callbacks for as long as it lives, and counts them. The grabber calls on
/// any thread; one thread at a time looks and waits.
class EventRecorder {
public:
    explicit EventRecorder(CMivoraGrabber& grabberToWatch);
    /// To be destroyed before the grabber, when it acquires no more.
    ~EventRecorder();
    EventRecorder(const EventRecorder&) = delete;
    EventRecorder& operator=(const EventRecorder&) = delete;

    /// Takes the events since the last call.
    GrabberEvents Take();

    /// Frames handed over since the last ResetFrames.
    std::uint64_t Frames() const;
    void ResetFrames();
    /// Configuration changes since the recorder was made.
    std::uint64_t ConfigurationChanges() const;

    /// Waits until `condition` holds, at most `timeoutMs` milliseconds, or until the user wants the
    /// program to stop; answers what the condition said last. The condition is asked without any
    /// lock held, after every event and now and then, since not all that a caller may wait for
    /// brings an event. Windows of this thread live meanwhile.
    bool WaitFor(const std::function<bool()>& condition, std::uint64_t timeoutMs);

    /// Called for every frame on the thread that brings it, before it is counted. To be set while
    /// nothing is acquired.
    void SetFrameHook(std::function<void(std::uint64_t bufferIndex)> hook);

private:
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
