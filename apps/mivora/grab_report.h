// grab_report.h - the final report of the command "grab"
#pragma once

#include "apps/common/continuous_grab.h"
#include "apps/common/json_text.h"
#include "apps/common/no_frame_cause.h"
#include "apps/common/packet_statistics.h"
#include "apps/mivora/grab_options.h"
#include "apps/mivora/grab_recording.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

JsonValue AccountJson(const FrameAccount& account, std::uint64_t written);
/// The lines "account" and, if the SDK counts, "buffers".
std::string AccountText(const FrameAccount& account);

/// "frames" and "errors" and "rate", as the report has them.
std::string RateText(const FrameAccount& account, double framesPerSecond,
                     double megabytesPerSecond);

struct GrabReport {
    FrameAccount account;
    FrameTiming timing;
    std::uint64_t wanted = 0;    ///< frames; 0: until the user interrupts
    std::uint64_t imageSize = 0; ///< bytes
    /// When the first frame was handed over, as platform::MonotonicNanoseconds counts.
    std::optional<std::uint64_t> firstFrameNs;
    std::uint64_t reconnects = 0;
    PacketStatistics packets;
    bool interrupted = false;
    bool isGivenUp = false;                   ///< it ended because another camera's run failed
    std::optional<NoFrameCause> noFrameCause; ///< when it ended because no frame came
    std::optional<RecordingReport> recording;

    double MegabytesPerSecond() const;
    std::vector<JsonMember> Members() const;
    std::string Json() const;
    std::string Text() const;
};

/// Prints one of the two: to standard error where frames go to standard output.
void PrintGrabReport(const GrabOptions& options, const std::string& json, const std::string& text);
