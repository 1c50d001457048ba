// acquisition_engine.h - fills the queued frames of one stream
#pragma once

#include "platform/thread.h"
#include "pxnc.h"
#include "pxnc/simulator/faults.h"
#include "pxnc/simulator/picture.h"
#include "pxnc/skeleton/frame_book.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>

namespace pxsim {

/// What a camera sends after "AcquisitionStart".
struct AcquisitionPlan {
    ImageSetup image;
    std::uint64_t frameCount = 0; // 0: until stopped
    bool triggered = false;       // a frame per trigger instead of one per period
    bool freeRunning = false;     // a frame as soon as a buffer is queued
    std::int64_t periodNs = 0;
    std::uint32_t chunkBytes = 0; // 0: no chunk data
    std::uint32_t packetSize = 0; // with headers; 0: not sent in packets that are counted
};

/// The camera as its engines see it. Called on the engine's thread, with no lock held.
class AcquisitionOwner {
public:
    virtual ~AcquisitionOwner() = default;
    /// The last frame of a limited acquisition has been sent.
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
    std::atomic<std::uint64_t> packets = 0;        // that came
    std::atomic<std::uint64_t> missingPackets = 0; // of frames that came in part
    std::atomic<std::uint64_t> resentPackets = 0;
};

/// The frames of a stream and the thread that fills them, which runs from the first capture start
/// to the end of the camera. Callbacks run on it.
class AcquisitionEngine : public skeleton::FrameBook {
public:
    AcquisitionEngine(AcquisitionOwner& owner,
                      std::shared_ptr<skeleton::CallbackTurns> turnsOfCamera);
    ~AcquisitionEngine() override;

    PxnError StartCapture() override EXCLUDES(mutex);
    PxnError EndCapture() override EXCLUDES(mutex);
    /// The camera is gone: ends all waits and hands back nothing more. Waits only for a buffer that
    /// is being written, never for a callback.
    void Vanish() EXCLUDES(mutex);

    /// The camera starts, changes and stops sending. None of these waits for a callback.
    void BeginAcquisition(const AcquisitionPlan& plan) EXCLUDES(mutex);
    void UpdatePlan(const AcquisitionPlan& plan) EXCLUDES(mutex);
    void EndAcquisition() EXCLUDES(mutex);
    void Trigger() EXCLUDES(mutex);

    bool IsAcquiring() const EXCLUDES(mutex);
    /// Bytes of the payload in an announced frame; 0 before one has been received. False when the
    /// frame is not announced here.
    bool PayloadOf(const PxnFrame* frame, std::uint32_t& bytes) const EXCLUDES(mutex);
    StreamStatistics& Statistics() { return statistics; }
    /// Frames that were due while no buffer was queued, or that a fault dropped.
    std::uint64_t DroppedFrames() const { return droppedFrames; }
    /// When the frame was taken whose callback runs on the calling thread; empty on other threads.
    static std::optional<skeleton::Clock::time_point> CurrentFrameTime();

private:
    static void ThreadProcedure(void* self);
    void Run() EXCLUDES(mutex);
    void PreparePicture() REQUIRES(mutex);
    bool IsFrameDue() REQUIRES(mutex);
    void SendFrame() REQUIRES(mutex);
    void Send(const SlotPointer& slot, std::uint64_t frameId, FrameFault fault) REQUIRES(mutex);
    void Schedule() REQUIRES(mutex);
    void Fill(Slot& slot, const AcquisitionPlan& current, std::uint64_t frameId, FrameFault fault);
    void CountPackets(const AcquisitionPlan& current, FrameFault fault);
    void FinishWhenComplete() REQUIRES(mutex);

    AcquisitionOwner& owner;
    StreamStatistics statistics;
    std::atomic<std::uint64_t> droppedFrames = 0;
    Picture picture; // used by the engine's thread only
    platform::Thread thread;

    AcquisitionPlan plan GUARDED_BY(mutex);
    std::uint64_t nextFrameId GUARDED_BY(mutex) = 0;
    std::uint64_t pendingTriggers GUARDED_BY(mutex) = 0;
    skeleton::Clock::time_point nextDue GUARDED_BY(mutex);
    skeleton::Clock::time_point dropEnd GUARDED_BY(mutex); // of the last frame that a fault dropped
    bool repeatFrame GUARDED_BY(mutex) = false; // the next frame has the number of the last
    bool writing GUARDED_BY(mutex) = false;
    bool acquiring GUARDED_BY(mutex) = false;
    bool isNew GUARDED_BY(mutex) = false; // the acquisition has sent no frame
    bool ending GUARDED_BY(mutex) = false;
};

} // namespace pxsim
