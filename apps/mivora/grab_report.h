// grab_report.h - the final report of the command "grab"
#pragma once

#include "apps/common/continuous_grab.h"
#include "apps/mivora/grab_recording.h"

#include <cstdint>
#include <optional>
#include <string>

struct GrabReport {
    FrameAccount account;
    FrameTiming timing;
    std::uint64_t imageSize = 0; ///< bytes
    std::uint64_t reconnects = 0;
    bool interrupted = false;
    bool cameraLost = false;
    std::optional<RecordingReport> recording;

    double MegabytesPerSecond() const;
    std::string Json() const;
    std::string Text() const;
};
