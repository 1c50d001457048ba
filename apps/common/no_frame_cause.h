// no_frame_cause.h - why no frame comes
#pragma once

#include "apps/common/packet_statistics.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class ServiceClient;

enum class NoFrameKind {
    kUnknown,    ///< nothing says why
    kGone,       ///< the camera is not there any more, or does not reply
    kNotStarted, ///< the SDK failed when the acquisition was started
    kEnded,      ///< it plays a recording, which is over
    kTrigger,    ///< it waits for a trigger
    kSlow,       ///< its frames are further apart than the time that was waited
    kIncomplete, ///< frames come, none of which is whole
    kNoBuffer,   ///< frames come while no buffer is queued
    kNotArriving ///< it sends, or should, and nothing gets here
};

struct NoFrameCause {
    NoFrameKind kind = NoFrameKind::kUnknown;
    std::string text; ///< continues a sentence after a colon

    /// The camera works as it is set and frames may come yet.
    bool IsWait() const { return kind == NoFrameKind::kTrigger || kind == NoFrameKind::kSlow; }
};

/// What is known since the last whole frame, or since the start of the acquisition.
struct NoFrameFacts {
    std::uint64_t waitedMs = 0;
    std::uint64_t incomplete = 0;         ///< frames received in error
    std::vector<std::string> startErrors; ///< logged while the acquisition was started
    PacketStatistics packets;
};

/// What the open camera waits for when one of its triggers is on; empty otherwise. Its trigger
/// selector is moved and put back.
std::optional<NoFrameCause> FindTriggerWait(ServiceClient& services);

/// Asks the open camera, whose acquisition still runs. Its trigger selector is moved and put back.
/// Without services (null) the camera may be gone.
NoFrameCause FindNoFrameCause(ServiceClient* services, const NoFrameFacts& facts);
