// acquisition_engine.h - the frames of one stream: announced, queued, filled, handed back
#pragma once

#include "platform/mutex.h"
#include "platform/thread.h"
#include "pxnc.h"
#include "pxnc/simulator/accounting.h"
#include "pxnc/simulator/condition.h"
#include "pxnc/simulator/faults.h"
#include "pxnc/simulator/picture.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace pxsim {

/// What a camera sends from "AcquisitionStart" on.
struct AcquisitionPlan {
    ImageSetup image;
    std::uint64_t frameCount = 0; // 0: until stopped
    bool triggered = false;       // a frame per trigger instead of one per period
    bool freeRunning = false;     // as fast as buffers are queued
    std::int64_t periodNs = 0;
    std::uint32_t chunkBytes = 0; // 0: no chunk data
};

/// The camera, seen from its engines. Called without any lock held, on the engine's thread.
class AcquisitionOwner {
public:
    virtual ~AcquisitionOwner() = default;
    /// The last frame of a limited acquisition was sent.
    virtual void OnAcquisitionFinished() = 0;
    /// Frame `frameId` is about to be sent and something is scheduled for it.
    virtual void OnScheduledFrame(std::uint64_t frameId) = 0;
    /// The frame has been written and is about to be handed back.
    virtual void OnFrameSent(std::uint64_t frameId) = 0;
    /// Writes the chunk data of a frame into `bytes` bytes at `out`.
    virtual void WriteChunks(const PxnFrame& frame, std::uint8_t* out, std::uint32_t bytes) = 0;
    /// Nanoseconds on the camera's clock.
    virtual std::uint64_t Timestamp() const = 0;
};

/// Counters of a stream, as its features show them.
struct StreamStatistics {
    std::atomic<std::uint64_t> delivered = 0;
    std::atomic<std::uint64_t> incomplete = 0;
    std::atomic<std::uint64_t> underrun = 0; // no buffer was queued
    std::atomic<std::uint64_t> lost = 0;     // dropped by a fault
    std::atomic<std::uint64_t> bytes = 0;
    std::atomic<std::uint32_t> announced = 0;
    std::atomic<std::uint32_t> queued = 0;
};

/// Owns the announced frames of a stream and the thread that fills them.
///
/// A frame is announced, then any number of times queued, filled and handed back (by callback,
/// by the end of a wait, or both), and finally revoked. The thread runs from the first capture
/// start to the end; a callback runs on it without any lock held. What would have to wait for
/// the running callback answers PxnErrInvalidCall inside a frame callback; elsewhere it waits.
class AcquisitionEngine {
public:
    AcquisitionEngine(AcquisitionOwner& owner, Accounting& accounting);
    ~AcquisitionEngine();
    AcquisitionEngine(const AcquisitionEngine&) = delete;
    AcquisitionEngine& operator=(const AcquisitionEngine&) = delete;

    /// The handles that callbacks name; the camera has just been opened and the engine closed
    /// before.
    void Open(PxnHandle camera, PxnHandle stream) EXCLUDES(mutex);
    /// Ends everything, waits for a running callback and revokes what is left.
    void Close() EXCLUDES(mutex);
    /// The camera is gone: ends all waits, hands nothing back any more. Waits only for a buffer
    /// that is just being written, never for a callback.
    void Vanish() EXCLUDES(mutex);

    PxnError Announce(const PxnFrame* frame) EXCLUDES(mutex);
    PxnError Revoke(const PxnFrame* frame) EXCLUDES(mutex);
    PxnError RevokeAll() EXCLUDES(mutex);
    PxnError StartCapture() EXCLUDES(mutex);
    PxnError EndCapture() EXCLUDES(mutex);
    PxnError Queue(const PxnFrame* frame, PxnFrameCallback callback) EXCLUDES(mutex);
    PxnError Wait(const PxnFrame* frame, std::uint32_t timeoutMs) EXCLUDES(mutex);
    PxnError Flush() EXCLUDES(mutex);

    /// The camera starts, changes and stops sending. None of these waits for a callback.
    void BeginAcquisition(const AcquisitionPlan& plan) EXCLUDES(mutex);
    void UpdatePlan(const AcquisitionPlan& plan) EXCLUDES(mutex);
    void EndAcquisition() EXCLUDES(mutex);
    void Trigger() EXCLUDES(mutex);

    bool IsCapturing() const { return capturingNow; }
    bool IsAcquiring() const EXCLUDES(mutex);
    /// Bytes of the payload in an announced frame: 0 when none has been received. False when the
    /// frame is not announced here.
    bool PayloadOf(const PxnFrame* frame, std::uint32_t& bytes) const EXCLUDES(mutex);
    StreamStatistics& Statistics() { return statistics; }

private:
    enum class SlotState { kIdle, kQueued, kFilling, kDone, kRevoked };

    /// One announced frame. Shared with those who wait for it, who may outlive its revocation.
    struct Slot {
        PxnFrame* frame = nullptr;
        void* buffer = nullptr;
        std::uint32_t bufferSize = 0;
        std::uint32_t payload = 0; // bytes written last
        PxnFrameCallback callback = nullptr;
        SlotState state = SlotState::kIdle;
    };
    using SlotPointer = std::shared_ptr<Slot>;

    static void ThreadProcedure(void* self);
    void Run() EXCLUDES(mutex);
    bool IsFrameDue() REQUIRES(mutex);
    void SendFrame() REQUIRES(mutex);
    void Hand(const SlotPointer& slot, std::uint64_t frameId, FrameFault fault) REQUIRES(mutex);
    void Schedule() REQUIRES(mutex);
    void Fill(Slot& slot, const AcquisitionPlan& current, std::uint64_t frameId, FrameFault fault);
    void FinishWhenComplete() REQUIRES(mutex);
    void FlushQueue() REQUIRES(mutex);
    void RevokeSlots(std::atomic<std::uint64_t>& counter) REQUIRES(mutex);
    void WaitForRunningFrame() REQUIRES(mutex);
    SlotPointer FindSlot(const PxnFrame* frame) const REQUIRES(mutex);
    void UpdateCounts() REQUIRES(mutex);

    AcquisitionOwner& owner;
    Accounting& accounting;
    StreamStatistics statistics;
    Picture picture; // used by the engine's thread only
    platform::Thread thread;
    std::atomic<bool> capturingNow = false;

    mutable platform::Mutex mutex;
    Condition changed;
    PxnHandle cameraHandle GUARDED_BY(mutex) = nullptr;
    PxnHandle streamHandle GUARDED_BY(mutex) = nullptr;
    std::unordered_map<const PxnFrame*, SlotPointer> slots GUARDED_BY(mutex);
    std::vector<SlotPointer> queue GUARDED_BY(mutex); // a ring of `slots.size()` places or more
    std::size_t queueHead GUARDED_BY(mutex) = 0;
    std::size_t queueLength GUARDED_BY(mutex) = 0;
    AcquisitionPlan plan GUARDED_BY(mutex);
    std::uint64_t nextFrameId GUARDED_BY(mutex) = 0;
    std::uint64_t pendingTriggers GUARDED_BY(mutex) = 0;
    Clock::time_point nextDue GUARDED_BY(mutex);
    std::uint64_t begunFrames GUARDED_BY(mutex) = 0; // taken up by the thread
    std::uint64_t endedFrames GUARDED_BY(mutex) = 0; // and done, callback and all
    bool repeatFrame GUARDED_BY(mutex) = false;      // the next frame bears the last one's number
    bool writing GUARDED_BY(mutex) = false;
    bool capturing GUARDED_BY(mutex) = false;
    bool acquiring GUARDED_BY(mutex) = false;
    bool closed GUARDED_BY(mutex) = true; // nothing is handed back any more
    bool ending GUARDED_BY(mutex) = false;
};

} // namespace pxsim
