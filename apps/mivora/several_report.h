// several_report.h - the final report of the command "grab" for several cameras
#pragma once

#include "apps/common/json_text.h"
#include "apps/mivora/grab_report.h"
#include "apps/recording/recording_description.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What has become of one of the cameras.
struct CameraReport {
    std::string name; ///< for people
    std::int32_t index = 0;
    std::uint32_t uniqueId = 0;
    RecordedCamera identity;
    std::string folder; ///< of its recording
    GrabReport grab;
    bool isFailed = false;
    std::string problem; ///< why not all that was wanted has been done; empty if it has
};

/// A line for each camera, and the sum.
struct SeveralReport {
    std::vector<CameraReport> cameras;
    std::optional<SdkCounts> sdk; ///< of all cameras together; empty if it does not count
    std::string output;           ///< directory of the recordings, or empty
    std::string startedBy;
    bool interrupted = false;

    FrameAccount Account() const;
    double FramesPerSecond() const;
    double MegabytesPerSecond() const;
    /// From the first to the last camera's first frame; empty unless all have one.
    std::optional<std::uint64_t> FirstFramesNs() const;
    RecordedFrames Recorded() const;
    /// The cameras that have a problem, a line each; and whether one of them failed.
    std::vector<std::string> Problems() const;
    bool IsFailed() const;
    std::string Json() const;
    std::string Text() const;
};
