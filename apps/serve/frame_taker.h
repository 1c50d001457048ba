// frame_taker.h - takes the frames of an acquisition from the host's ring
#pragma once

#include "apps/common/continuous_grab.h"
#include "apps/serve/frame_holder.h"
#include "apps/serve/running_recording.h"
#include "apps/serve/state_board.h"
#include "platform/condition.h"
#include "platform/mutex.h"
#include "platform/thread.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>

class Session;

/// A thread that takes frames as they come, whatever the owner of the camera is doing: hands them
/// to the holder and to a recording, and keeps the board's counts. Made and ended by the owner,
/// which leaves the acquisition alone meanwhile.
class FrameTaker {
public:
    FrameTaker(Session& grabbingSession, ContinuousGrab& startedGrab, FrameHolder& frameHolder,
               StateBoard& stateBoard);
    /// Ends the thread.
    ~FrameTaker();
    FrameTaker(const FrameTaker&) = delete;
    FrameTaker& operator=(const FrameTaker&) = delete;

    /// Throws CommandFailure.
    void Start();
    /// Frames that come from now on are added to the recording until it has all.
    void Record(std::shared_ptr<RunningRecording> recording);
    /// The recording is not used any more once this has returned.
    void StopRecording();

    std::uint64_t Taken() const { return taken.load(); }
    /// Why it has ended by itself; empty if it has not.
    std::string Failure() const;

private:
    void TakeAll() noexcept;
    std::shared_ptr<RunningRecording> NextRecording();
    void TakeOne(RunningRecording* current);
    void KeepCounts(std::uint64_t now);
    double RateAt(std::uint64_t now);

    /// The number of frames at a time.
    struct RateSample {
        std::uint64_t time;
        std::uint64_t frames;
    };

    Session& session;
    ContinuousGrab& grab;
    FrameHolder& holder;
    StateBoard& board;
    const FrameAccount before; // of the acquisitions before this one

    std::atomic<bool> isEnding{false};
    std::atomic<std::uint64_t> taken{0};

    // The thread's.
    std::uint64_t damaged = 0;
    std::uint64_t lastCounts = 0;
    std::deque<RateSample> samples;
    std::vector<std::uint8_t> buffer;

    mutable platform::Mutex mutex; // held for moments only
    platform::Condition turned;
    std::shared_ptr<RunningRecording> recording GUARDED_BY(mutex);
    std::uint64_t turn GUARDED_BY(mutex) = 0; // how often the thread has looked at it
    bool hasEnded GUARDED_BY(mutex) = false;
    std::string failure GUARDED_BY(mutex);

    platform::Thread thread; // last: it uses all other members
};
