// frame_player.h - the stream of a camera that plays a recording
#pragma once

#include "apps/recording/frame_reader.h"
#include "apps/recording/playback_plan.h"
#include "apps/recording/recording_index.h"
#include "platform/thread.h"
#include "pxnc/recording/playback_format.h"
#include "pxnc/skeleton/clock.h"
#include "pxnc/skeleton/frame_book.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace playback {

/// A recording that can be played, and how. Does not change.
struct Recording {
    std::string directory;
    RecordingIndex index;
    PlaybackPlan plan;
    PixelFormat format{};
    std::uint32_t imageBytes = 0;
    bool isFast = false; ///< sent as soon as a frame is queued, not at the recorded times

    /// Reads the recording. Throws CommandFailure with the file and the reason when it cannot be
    /// played.
    static std::shared_ptr<const Recording> Open(const std::string& directory, bool isFast);
};

/// Fills the queued frames with the images of a recording, on a thread that reads one frame ahead.
/// At the recorded times a frame that finds none queued is lost, as with any camera; only the first
/// one, from which the times are counted, waits. After the last frame none follows, unless
/// repeating is on.
class FramePlayer final : public skeleton::FrameBook {
public:
    explicit FramePlayer(std::shared_ptr<const Recording> played);
    ~FramePlayer() override;

    PxnError StartCapture() override EXCLUDES(mutex);
    PxnError EndCapture() override EXCLUDES(mutex);

    ///@{
    /// The camera's commands: play from the first frame on, and play no more. They wait for
    /// nothing.
    void Play() EXCLUDES(mutex);
    void Stop() EXCLUDES(mutex);
    ///@}
    bool Repeats() const { return repeats; }
    void SetRepeats(bool value) EXCLUDES(mutex);
    /// The number in the recording of the frame that was due last; 0 before the first one.
    std::uint64_t Position() const { return position; }
    /// The last frame of the recording was due, and repeating is off.
    bool HasEnded() const;
    /// Why a frame has no chunks.
    PxnError ChunksOf(const PxnFrame& frame) const EXCLUDES(mutex);

private:
    static void ThreadProcedure(void* self);
    void Run() EXCLUDES(mutex);
    /// False when there is nothing to be done until something changes.
    bool Advance() REQUIRES(mutex);
    bool BeginRound() REQUIRES(mutex);
    void ReadAhead() REQUIRES(mutex);
    void Send() REQUIRES(mutex);
    void Fill(Slot& slot, const FrameLine& line, std::uint64_t roundOfFrame) const;
    void Next() REQUIRES(mutex);
    const FrameLine& NextLine() const REQUIRES(mutex) {
        return recording->index.lines[recording->plan.frames[next].line];
    }

    const std::shared_ptr<const Recording> recording;
    std::atomic<bool> repeats = false; // written with `mutex`
    std::atomic<std::uint64_t> position = 0;

    // The next frame: read by the thread without the mutex, which alone touches them.
    FrameReader reader;
    std::vector<std::uint8_t> image;
    bool isImageBad = false;

    bool isPlaying GUARDED_BY(mutex) = false;
    bool isEnding GUARDED_BY(mutex) = false;
    bool isRead GUARDED_BY(mutex) = false;               // the next frame
    std::uint64_t plays GUARDED_BY(mutex) = 0;           // how often Play was called
    std::uint64_t round GUARDED_BY(mutex) = 0;           // repetitions since then
    std::size_t next GUARDED_BY(mutex) = 0;              // in the plan
    skeleton::Clock::time_point begin GUARDED_BY(mutex); // of the round
    platform::Thread thread;                             // started by the first capture
};

} // namespace playback
