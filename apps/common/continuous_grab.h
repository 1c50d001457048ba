// continuous_grab.h - continuous acquisition with an account of every frame
#pragma once

#include "apps/common/frame_journal.h"
#include "apps/common/frame_pace.h"
#include "apps/common/histogram.h"
#include "apps/common/host_image.h"
#include "apps/common/sdk_control.h"
#include "platform/mutex.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <vector>

class ServiceClient;
class Session;

/// Accounts for buffers and frames. Every frame that the module delivered was taken by the program,
/// lost because the program was too slow, or flushed because it was still waiting when the
/// acquisition stopped. If the SDK counts as well, every announced buffer was revoked, every queued
/// buffer was either filled or flushed, and every frame that reached the module was either complete
/// or in error.
struct FrameAccount {
    std::uint64_t completed = 0; ///< complete frames counted by the module
    std::uint64_t delivered = 0; ///< handed over to the host
    std::uint64_t taken = 0;     ///< taken from the host's ring by the program
    std::uint64_t lost = 0;      ///< lost in the host's ring
    std::uint64_t flushed = 0;   ///< left in the ring at the end
    std::uint64_t damaged = 0;   ///< of those taken: overwritten while being copied
    std::uint64_t inError = 0;   ///< received in error, never handed over

    std::optional<SdkCounts> sdk{SdkCounts{}}; ///< the SDK's counts; empty if it does not count

    /// True if all sums match and no frame or buffer is missing.
    bool IsClosed() const;
    FrameAccount& operator+=(const FrameAccount& other);
};

/// Timing of the frames as the host sees them, in nanoseconds.
struct FrameTiming {
    Histogram latency;      ///< from the frame's timestamp to the post-process callback
    Histogram handOver;     ///< from the post-process callback until the program has the buffer
    Histogram interval;     ///< between two post-process callbacks
    std::uint64_t last = 0; ///< time of the latest callback

    std::uint64_t takenIntervals = 0;   ///< between two frames that the program took
    std::uint64_t takenNanoseconds = 0; ///< sum of those

    /// Frames per second that the program took, not counting pauses between runs; 0 for fewer than
    /// two frames.
    double Rate() const;
};

enum class FrameResult {
    kNone,    ///< no frame within the timeout
    kTaken,   ///< a frame was taken
    kDamaged, ///< a frame was taken, but overwritten by the camera while being copied
};

/// Runs a continuous acquisition of the open camera. Frames arrive on the camera SDK's thread; all
/// methods are called on one other thread.
class ContinuousGrab {
public:
    /// With `isPaced` frames come no faster than they are taken, see FramePace; not with a single
    /// buffer.
    ContinuousGrab(Session& grabbingSession, std::uint64_t buffers, bool isPaced = false);
    ~ContinuousGrab();
    ContinuousGrab(const ContinuousGrab&) = delete;
    ContinuousGrab& operator=(const ContinuousGrab&) = delete;

    /// Prepares and begins; throws CommandFailure.
    void Start() {
        Prepare();
        Begin();
    }
    /// All that can be done before the camera is started: prepares the buffers. Throws
    /// CommandFailure.
    void Prepare();
    /// After Prepare: starts the camera. Throws CommandFailure.
    void Begin();
    /// Waits at most `timeoutMs` milliseconds for a frame and takes the oldest one. `copy`, if
    /// given, receives the image: the camera keeps filling buffers, even those that the host holds.
    /// `taken` says which frame it is and what became of those before it.
    FrameResult TakeFrame(std::uint64_t timeoutMs, std::vector<std::uint8_t>* copy,
                          TakenFrame& taken);
    /// The same for whoever need not know which frame it is.
    FrameResult TakeFrame(std::uint64_t timeoutMs, std::vector<std::uint8_t>* copy) {
        TakenFrame taken;
        return TakeFrame(timeoutMs, copy, taken);
    }
    /// Adds the frames of the last run that came after the one taken last; after Stop.
    void TakeRest(std::vector<FrameGap>& gaps) { journal.TakeRest(gaps); }
    bool IsRunning() const { return running; }
    /// Stops, and adds the frames since Start to the account.
    void Stop();

    /// Frames of all runs that were received in error.
    std::uint64_t ReceiveErrors() const { return account.inError + (running ? ErrorsInRun() : 0); }
    /// True if a configuration change was reported and no frame has arrived since.
    bool IsSuspicious() const;
    /// Covers all frames from the first Start to the last Stop.
    const FrameAccount& Account() const { return account; }
    FrameTiming Timing() const;
    /// The longest time between two frames, in nanoseconds.
    std::uint64_t LongestInterval() const;
    const ImageLayout& Layout() const { return layout; }

private:
    static void OnReceived(const MV_FRAME_INFO* frame, void* self);
    void OnFrame(std::uint64_t bufferIndex);
    bool CopyImage(std::uint64_t bufferIndex, const TakenFrame& taken,
                   std::vector<std::uint8_t>& copy) const;
    ServiceClient* Services();
    std::uint64_t ErrorsInRun() const;
    std::optional<SdkCounts> CountOfSdk();

    Session& session;
    const std::uint64_t bufferCount;
    const bool isPaced;
    ImageLayout layout;
    bool running = false;
    FrameAccount account;
    std::uint64_t takenInRun = 0;
    std::uint64_t damagedInRun = 0;
    std::uint64_t errorsBefore = 0;
    std::optional<SdkCounts> sdkBefore;
    Histogram handOver;
    std::uint64_t lastTaken = 0; // when the frame taken last in this run was handed over
    std::uint64_t takenIntervals = 0;
    std::uint64_t takenNanoseconds = 0;
    bool isReported = false; // the module reports frames of any status

    std::atomic<std::uint64_t> errorsReported{0}; // in this run
    FrameJournal journal;
    FramePace pace;
    std::uint64_t errorsNoted = 0; // of the frames' thread
    std::atomic<std::uint64_t> changesAtLastFrame{0};
    mutable platform::Mutex timingMutex;
    FrameTiming timing GUARDED_BY(timingMutex); // what the frames' thread adds
};
