// grab_recording.h - records what the command "grab" takes
#pragma once

#include "apps/common/continuous_grab.h"
#include "apps/mivora/grab_options.h"
#include "apps/recording/recorder.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class JsonValue;
class Session;

/// What has become of a recording.
struct RecordingReport {
    std::string output; ///< as the user named it
    std::string format;
    std::uint64_t wanted = 0; ///< 0: until the user ended it
    RecorderCounts counts;
    std::uint64_t givenUp = 0; ///< of those lost: when the user wanted no more to be written
    std::uint64_t unknownGaps =
        0;                 ///< of those dropped: gaps of which nobody knows how long they are
    std::string queueFull; ///< when that ended the recording: how
    std::string failure;   ///< what could not be written

    /// Why this is not the wanted number of frames without a gap; empty if it is.
    std::string Reason() const;
    JsonValue Json() const;
};

/// Hands the frames of one camera to a recorder. One thread.
class GrabRecording {
public:
    /// Prepares the output for the session's open camera. `unixMinusHostNs` leads from the times of
    /// frames to those since 1970. Throws CommandFailure.
    GrabRecording(Session& session, const GrabOptions& grabOptions, std::uint64_t unixMinusHostNs);

    /// Waits for room for an image of this size, no longer than the time; false if there is none.
    bool WaitForRoom(std::uint64_t imageBytes, std::uint32_t timeoutMs) {
        return recorder->WaitForRoom(imageBytes, timeoutMs);
    }
    /// Where the next image is to be copied; null when there is no room for it.
    std::vector<std::uint8_t>* NextBuffer(std::uint64_t imageBytes);
    /// Adds a frame that was taken with that buffer, and what is missing before it.
    void Add(FrameResult result, const TakenFrame& taken, const ImageLayout& layout);
    void AddGaps(const std::vector<FrameGap>& gaps);
    /// The camera was away for a while.
    void AddPause();

    /// Nothing more is recorded: the queue is full or a frame could not be written.
    bool IsOver() const { return !queueFull.empty() || !recorder->Failure().empty(); }
    RecorderCounts Counts() const { return recorder->Counts(); }
    bool WaitUntilWritten(std::uint32_t timeoutMs) { return recorder->WaitUntilWritten(timeoutMs); }
    /// Gives up what waits; returns how many frames.
    std::uint64_t GiveUp();
    /// Completes the recording. `ending` is why it ended before it was complete; empty otherwise.
    RecordingReport Close(const std::string& ending);

private:
    RecordingReport Report() const;
    void RelateClocks();

    const GrabOptions& options;
    const std::uint64_t unixMinusHost;
    std::optional<ClockRelation> latchedClock;
    ArrivalClock arrivals;
    std::vector<std::uint8_t> buffer;
    bool hasRoom = true;
    std::uint64_t givenUp = 0;
    std::uint64_t unknownGaps = 0;
    std::string queueFull;
    std::unique_ptr<Recorder> recorder;
};
