// frame_wait.h - how long no frame has come, why, and what the stream counted meanwhile
#pragma once

#include "apps/common/no_frame_cause.h"
#include "apps/common/packet_statistics.h"

#include <cstdint>
#include <functional>
#include <utility>

class Session;

/// Follows the acquisitions of a session's open camera. One thread.
class FrameWait {
public:
    /// Counts the frames in error of the session's log.
    explicit FrameWait(Session& waitingSession);
    FrameWait(Session& waitingSession, std::function<std::uint64_t()> errorCount)
        : session(waitingSession), countErrors(std::move(errorCount)) {}

    /// An acquisition is about to start.
    void Begin();
    /// It starts now, some time after Begin.
    void BeginWaiting();
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
    const std::function<std::uint64_t()> countErrors; // frames received in error
    std::uint64_t lastFrame = 0;
    std::uint64_t errorsBefore = 0;
    bool hasFrame = false; // since the beginning
    PacketStatistics packetsBefore;
    PacketStatistics packets;
};
