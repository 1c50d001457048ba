// recording_summary.h - what the index of a recording adds up to
#pragma once

#include "apps/recording/recording_index.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

/// Frames one after another that were not recorded for one reason.
struct RecordedGap {
    FrameStatus status = FrameStatus::kDropped;
    std::uint64_t firstN = 0;
    std::uint64_t lastN = 0;
    std::optional<std::uint64_t> firstId; ///< the camera's number
    std::optional<std::uint64_t> lastId;
};

struct RecordingSummary {
    std::array<std::uint64_t, 5> byStatus{}; ///< lines, by FrameStatus
    std::uint64_t recorded = 0;              ///< lines with a file
    std::uint64_t missing = 0;               ///< lines without
    std::uint64_t bytes = 0;                 ///< of the frames in their files
    std::vector<RecordedGap> gaps;
    /// Between the first recorded frame and the last: by the camera's clock, or where that is not
    /// known or went back, by the computer's.
    std::optional<double> seconds;
    std::optional<double> framesPerSecond; ///< recorded ones, in that time
};

RecordingSummary Summarise(const RecordingIndex& index);
