// grab_report.h - the final report of the command "grab"
#pragma once

#include "apps/common/continuous_grab.h"
#include "apps/common/no_frame_cause.h"
#include "apps/common/packet_statistics.h"
#include "apps/mivora/grab_recording.h"

#include <cstdint>
#include <optional>
#include <string>

struct GrabReport {
    FrameAccount account;
    FrameTiming timing;
    std::uint64_t imageSize = 0; ///< bytes
    std::uint64_t reconnects = 0;
    PacketStatistics packets;
    bool interrupted = false;
    std::optional<NoFrameCause> noFrameCause; ///< when it ended because no frame came
    std::optional<RecordingReport> recording;

    double MegabytesPerSecond() const;
    std::string Json() const;
    std::string Text() const;
};
