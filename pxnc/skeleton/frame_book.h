// frame_book.h - the announced frames of a stream and what has become of them
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"
#include "pxnc/skeleton/callback_turns.h"
#include "pxnc/skeleton/condition.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace skeleton {

/// How often frames changed their state since the object was made. Any thread.
struct FrameCounts {
    std::atomic<std::uint64_t> announced = 0;      ///< for the first time
    std::atomic<std::uint64_t> revoked = 0;        ///< by the host
    std::atomic<std::uint64_t> revokedByClose = 0; ///< left to the closing camera
    std::atomic<std::uint64_t> queued = 0;         ///< given to the SDK
    std::atomic<std::uint64_t> completed = 0;      ///< handed back filled
    std::atomic<std::uint64_t> flushed = 0;        ///< handed back as they were
    std::atomic<std::uint64_t> callbacks = 0;      ///< begun
};

/// The rules for the frames of one stream. Implementations derive from it and fill the frames.
///
/// A frame is announced, then any number of times queued, filled and handed back (by callback, by
/// the end of a wait, or both), and finally revoked. Callbacks run on the filling thread without
/// any lock held, one at a time for all streams of a camera. What waits for a running callback is
/// refused inside frame callbacks by the functions of the SDK, so it waits here in any case.
class FrameBook {
public:
    /// `turnsOfCamera` is shared by all streams of a camera.
    explicit FrameBook(std::shared_ptr<CallbackTurns> turnsOfCamera);
    virtual ~FrameBook() = default;
    FrameBook(const FrameBook&) = delete;
    FrameBook& operator=(const FrameBook&) = delete;

    /// The camera has been opened: `camera` and `stream` are the handles that callbacks receive.
    void Open(PxnHandle camera, PxnHandle stream) EXCLUDES(mutex);
    /// Ends the capture, waits for a running callback and revokes what is left.
    virtual void Close() EXCLUDES(mutex);

    /// What PxnFrameAnnounce does; waits while the SDK fills the frame.
    PxnError Announce(const PxnFrame* frame) EXCLUDES(mutex);
    /// PxnErrInUse for a queued frame.
    PxnError Revoke(const PxnFrame* frame) EXCLUDES(mutex);
    /// Takes all frames back, queued ones included, after running callbacks.
    PxnError RevokeAll() EXCLUDES(mutex);
    /// What PxnCaptureFrameQueue does.
    PxnError Queue(const PxnFrame* frame, PxnFrameCallback callback) EXCLUDES(mutex);
    /// What PxnCaptureFrameWait does.
    virtual PxnError Wait(const PxnFrame* frame, std::uint32_t timeoutMs) EXCLUDES(mutex);
    /// What PxnCaptureQueueFlush does.
    virtual PxnError Flush() EXCLUDES(mutex);
    /// Begins to fill queued frames; succeeds when it does already.
    virtual PxnError StartCapture() EXCLUDES(mutex) = 0;
    /// Waits for a running callback; queued frames stay queued.
    virtual PxnError EndCapture() EXCLUDES(mutex) = 0;

    ///@{
    /// The present state, for statistics: it may have changed when the caller looks at it.
    bool IsCapturing() const { return isCapturing; }
    std::uint32_t AnnouncedFrames() const { return announcedFrames; }
    std::uint32_t QueuedFrames() const { return queuedFrames; }
    const FrameCounts& Counts() const { return counts; }
    ///@}

protected:
    /// What becomes of a frame: kFilling from TakeQueued to HandBack.
    enum class SlotState { kIdle, kQueued, kFilling, kDone, kRevoked };

    /// One announced frame. Shared with those who wait for it, who may outlive its revocation.
    struct Slot {
        PxnFrame* frame = nullptr;           ///< the host's record
        void* buffer = nullptr;              ///< as announced
        std::uint32_t bufferSize = 0;        ///< bytes
        std::uint32_t payload = 0;           ///< bytes received last
        PxnFrameCallback callback = nullptr; ///< as queued; may be null
        PxnError result = PxnErrSuccess;     ///< of a wait, once it is done
        SlotState state = SlotState::kIdle;  ///< where it is
        std::shared_ptr<void> attachment;    ///< the implementation's own
    };
    /// Who holds one reads and writes it with the mutex held.
    using SlotPointer = std::shared_ptr<Slot>;

    /// Counts a frame as running, from before it is taken until its callback has returned; what
    /// waits for callbacks waits for it. The mutex must be held where it begins and ends.
    class RunningFrame {
    public:
        /// The mutex must be held.
        explicit RunningFrame(FrameBook& frames) : book(frames) { ++book.begunFrames; }
        ~RunningFrame() {
            ++book.endedFrames;
            book.changed.NotifyAll();
        }
        RunningFrame(const RunningFrame&) = delete;
        RunningFrame& operator=(const RunningFrame&) = delete;

    private:
        FrameBook& book;
    };

    /// The rules that a wrong SDK may break; tests of hosts switch them off.
    struct Rules {
        bool onlyAnnouncedFramesAreQueued = true; ///< others are refused
        bool callbacksTakeTurns = true;           ///< those of one camera
    };
    /// The rules of the SDK, unless a derived class breaks them.
    virtual Rules CurrentRules() const { return {}; }

    /// A frame was announced, for the first time or with another buffer. A failure refuses it.
    virtual PxnError OnAnnounced(Slot& /*slot*/, const PxnFrame& /*announced*/) REQUIRES(mutex) {
        return PxnErrSuccess;
    }
    /// A frame was queued; it is the last one of `queue`.
    virtual void OnQueued(Slot& /*slot*/) REQUIRES(mutex) {}
    /// Takes the queued frame at `position` out to be filled.
    SlotPointer TakeQueued(std::size_t position = 0) REQUIRES(mutex);
    /// A taken frame is filled: ends its wait with `result`, and calls its callback. Releases the
    /// mutex during the callback.
    void HandBack(const SlotPointer& slot, PxnError result = PxnErrSuccess) REQUIRES(mutex);
    /// Calls a frame's callback when its turn has come.
    void CallBack(const Slot& slot) REQUIRES(mutex);
    /// Makes the queued frames idle, oldest first.
    void FlushQueue() REQUIRES(mutex);
    /// Waits for all that were running when it was called.
    void WaitForRunningFrames() REQUIRES(mutex);
    /// Null when the frame is not announced.
    SlotPointer FindSlot(const PxnFrame* frame) const REQUIRES(mutex);
    /// Sets what IsCapturing returns, and wakes the waiters.
    void SetCapturing(bool value) REQUIRES(mutex);

    mutable platform::Mutex mutex; ///< guards the frames and what derived classes add
    Condition changed;             ///< notified when any of it has changed
    ///@{
    /// What callbacks receive, from Open on.
    PxnHandle cameraHandle GUARDED_BY(mutex) = nullptr;
    PxnHandle streamHandle GUARDED_BY(mutex) = nullptr;
    ///@}
    std::vector<SlotPointer> queue GUARDED_BY(mutex); ///< has room for all slots
    bool isClosed GUARDED_BY(mutex) = true;           ///< nothing is handed back any more

private:
    void RevokeSlots(std::atomic<std::uint64_t>& counter) REQUIRES(mutex);
    void UpdateCounts() REQUIRES(mutex);
    SlotPointer AddSlot(const PxnFrame* frame) REQUIRES(mutex);

    const std::shared_ptr<CallbackTurns> turns;
    std::unordered_map<const PxnFrame*, SlotPointer> slots GUARDED_BY(mutex);
    std::uint64_t begunFrames = 0; // guarded by `mutex`, like endedFrames
    std::uint64_t endedFrames = 0;
    std::atomic<bool> isCapturing = false; // written with `mutex`
    std::atomic<std::uint32_t> announcedFrames = 0;
    std::atomic<std::uint32_t> queuedFrames = 0;
    FrameCounts counts;
};

} // namespace skeleton
