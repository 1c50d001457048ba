// grab_report.h - the final report of the command "grab"
#pragma once

#include "apps/common/continuous_grab.h"

#include <cstdint>
#include <string>

struct GrabReport {
    FrameAccount account;
    FrameTiming timing;
    std::uint64_t imageSize = 0; ///< bytes
    std::uint64_t written = 0;   ///< files
    std::uint64_t reconnects = 0;
    bool interrupted = false;
    bool cameraLost = false;

    double MegabytesPerSecond() const;
    std::string Json() const;
    std::string Text() const;
};
