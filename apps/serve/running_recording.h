// running_recording.h - a recording of what a page looks at
#pragma once

#include "apps/common/continuous_grab.h"
#include "apps/mivora/grab_options.h"
#include "apps/mivora/grab_recording.h"
#include "apps/serve/state_board.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class Session;

/// What a recording is to be.
struct RecordingWish {
    std::uint64_t frames = 0;
    std::string format;
    std::string name;      ///< among the recordings
    std::string directory; ///< where that is
};

/// Made and closed on the owner's thread; in between frames are added on the taker's. Whose it is
/// says HasAll, which the taker does not go back on.
class RunningRecording {
public:
    /// Throws CommandFailure.
    RunningRecording(Session& session, const RecordingWish& wish);

    // ---- the taker's ----

    /// See GrabRecording.
    std::vector<std::uint8_t>* NextBuffer(std::uint64_t imageBytes);
    void Add(FrameResult result, const TakenFrame& frame, const ImageLayout& layout);

    // ---- any thread ----

    /// All frames have come, or nothing more can be recorded.
    bool HasAll() const { return hasAll.load(); }
    RecordingState State() const;

    // ---- the owner's, after the taker's ----

    void AddRest(const std::vector<FrameGap>& gaps) { recording.AddGaps(gaps); }
    /// No more frames come.
    void EndEarly(const std::string& why);
    /// Completes it when all is written; false until then.
    bool TryClose();
    /// The state of what was closed.
    RecordingState Outcome() const { return outcome; }
    /// Completes it however long that takes.
    void Close();

private:
    const GrabOptions options;
    const std::string name;
    GrabRecording recording;
    std::atomic<std::uint64_t> taken{0};
    std::atomic<bool> hasAll{false};
    std::string ending;
    RecordingState outcome;
};
