// playback_plan.h - which frames of a recording are sent, and when
#pragma once

#include "apps/recording/recording_index.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// A frame to be sent.
struct PlannedFrame {
    std::size_t line = 0;            ///< its place among the lines of the index
    std::chrono::nanoseconds due{0}; ///< after the first frame
};

/// What of a recording a camera sends: the frames that were recorded, and those that arrived
/// incomplete. All others are gaps.
struct PlaybackPlan {
    std::vector<PlannedFrame> frames;
    std::chrono::nanoseconds length{0}; ///< from the first frame to the first of a repetition
    std::uint64_t idSpan = 0;           ///< what frame ids grow by from one repetition to the next
    std::uint64_t timestampSpan = 0;    ///< likewise, in nanoseconds
    std::size_t otherLayouts = 0;       ///< frames left out because their images are of other sizes
};

/// Times are those of the camera's clock; where frames lack them, or after they went back, those of
/// the computer's; without these the frame rate counts; without that all are due at once.
PlaybackPlan MakePlaybackPlan(const RecordingIndex& index);
