// continuous_grab.h - frames one after another, and what became of each
#pragma once

#include "apps/common/histogram.h"
#include "apps/common/host_image.h"
#include "apps/common/sdk_control.h"
#include "platform/mutex.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <vector>

class Session;

/// What became of buffers and frames. Every frame that the module handed over was taken by the
/// program, or lost because the program was slow, or flushed: it waited when the acquisition was
/// stopped. When the SDK counts too, every announced buffer was revoked, every queued one ended
/// with a frame or was flushed, and every frame that reached the module was complete or in error.
struct FrameAccount {
    std::uint64_t completed = 0; ///< complete frames that the module counts
    std::uint64_t delivered = 0; ///< handed over to the host
    std::uint64_t taken = 0;     ///< taken out of the host's ring by the program
    std::uint64_t lost = 0;      ///< lost in the host's ring
    std::uint64_t flushed = 0;   ///< left in the ring at the end
    std::uint64_t damaged = 0;   ///< of those taken: written over while being copied
    std::uint64_t inError = 0;   ///< received in error, never handed over

    std::optional<SdkCounts> sdk{SdkCounts{}}; ///< the SDK's side; none when it does not count

    /// True when everything adds up and nothing went astray.
    bool IsClosed() const;
    FrameAccount& operator+=(const FrameAccount& other);
};

/// How fast frames came, measured where the host can see it. Times in nanoseconds.
struct FrameTiming {
    Histogram latency;      ///< from the frame's timestamp to the post-process callback
    Histogram handOver;     ///< from the post-process callback to the buffer in the program's hands
    Histogram interval;     ///< between two post-process callbacks
    std::uint64_t last = 0; ///< the newest callback's moment

    /// Frames per second, pauses between two runs left out; 0 for fewer than two frames.
    double Rate() const;
};

enum class FrameResult {
    kNone,    ///< no frame came in time
    kTaken,   ///< a frame was taken
    kDamaged, ///< a frame was taken, and the camera wrote over it while it was being copied
};

/// Runs a continuous acquisition of the open camera. The frames come on the camera SDK's thread;
/// all operations are called on one other thread.
class ContinuousGrab {
public:
    ContinuousGrab(Session& grabbingSession, std::uint64_t buffers);
    ~ContinuousGrab();
    ContinuousGrab(const ContinuousGrab&) = delete;
    ContinuousGrab& operator=(const ContinuousGrab&) = delete;

    /// Prepares the buffers and starts; throws CommandFailure.
    void Start();
    /// Waits at most `timeoutMs` milliseconds for a frame and takes it, the oldest first. The image
    /// is copied into `copy` when that is given: the camera goes on filling buffers whatever the
    /// host holds.
    FrameResult TakeFrame(std::uint64_t timeoutMs, std::vector<std::uint8_t>* copy);
    /// Stops, and adds to the account what happened since Start.
    void Stop();

    /// True when the host was told of a configuration change and no frame has come since.
    bool IsSuspicious() const;
    /// Of all frames from the first Start to the last Stop.
    const FrameAccount& Account() const { return account; }
    FrameTiming Timing() const;
    double Rate() const;
    /// Between two frames, in nanoseconds.
    std::uint64_t LongestInterval() const;
    const ImageLayout& Layout() const { return layout; }

private:
    void OnFrame(std::uint64_t bufferIndex);
    bool CopyImage(std::uint64_t bufferIndex, std::vector<std::uint8_t>& copy) const;

    Session& session;
    const std::uint64_t bufferCount;
    ImageLayout layout;
    bool running = false;
    FrameAccount account;
    std::uint64_t takenInRun = 0;
    std::uint64_t damagedInRun = 0;
    std::uint64_t errorsBefore = 0;
    std::optional<SdkCounts> sdkBefore;
    Histogram handOver;

    std::atomic<std::uint64_t> framesInRun{0};
    std::atomic<std::uint64_t> changesAtLastFrame{0};
    mutable platform::Mutex timingMutex;
    FrameTiming timing GUARDED_BY(timingMutex); // the callback's share
    struct Arrival {
        std::uint64_t time = 0;
        std::uint64_t number = 0; // of the frame in this run, from 1
    };
    std::vector<Arrival> arrivals GUARDED_BY(timingMutex); // by buffer
};
