// frame_wait.h - how long no frame has come, why, and what the stream counted meanwhile
#pragma once

#include "apps/common/no_frame_cause.h"
#include "apps/common/packet_statistics.h"

#include <cstdint>

class Session;

/// Follows the acquisitions of a session's open camera. One thread.
class FrameWait {
public:
    explicit FrameWait(Session& waitingSession) : session(waitingSession) {}

    /// An acquisition is about to start.
    void Begin();
    /// A whole frame has come; also starts the waiting anew.
    void OnFrame();
    /// The acquisition is about to stop.
    void End();

    /// Since the last whole frame, or the beginning.
    std::uint64_t WaitedMs() const;
    /// When that was, as platform::MonotonicNanoseconds counts.
    std::uint64_t LastFrame() const { return lastFrame; }
    /// Asks the camera; before End.
    NoFrameCause FindCause();
    /// Of all acquisitions that have ended.
    const PacketStatistics& Packets() const { return packets; }

private:
    PacketStatistics PacketsOfThisRun();

    Session& session;
    std::uint64_t lastFrame = 0;
    std::uint64_t errorsBefore = 0;
    PacketStatistics packetsBefore;
    PacketStatistics packets;
};
