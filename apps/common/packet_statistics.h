// packet_statistics.h - what the stream says of packets and frames on their way
#pragma once

#include "apps/common/json_text.h"

#include <cstdint>
#include <optional>
#include <string>

class ServiceClient;

/// Counts of the stream module; empty what it does not count.
struct PacketStatistics {
    std::optional<std::uint64_t> received;  ///< packets
    std::optional<std::uint64_t> missing;   ///< packets that never came
    std::optional<std::uint64_t> resent;    ///< packets that came after they were asked for again
    std::optional<std::uint64_t> underruns; ///< frames that came while no buffer was queued
    std::optional<std::uint64_t> lost;      ///< frames that were lost on their way

    bool IsEmpty() const { return !received && !missing && !resent && !underruns && !lost; }
    /// Adds what was counted in another run.
    PacketStatistics& operator+=(const PacketStatistics& other);

    /// "1200 packets received, 3 missing, 5 resent; 2 frames without a buffer".
    std::string Text() const;
    /// Null when the stream counts nothing.
    JsonValue Json() const;
};

/// The present counts of the open camera's stream. `services` may be null.
PacketStatistics ReadPacketStatistics(ServiceClient* services);
/// What has been counted since `before`. A count that has become smaller was reset in between;
/// one that was not known before is not known.
PacketStatistics StatisticsSince(const PacketStatistics& before, const PacketStatistics& now);
