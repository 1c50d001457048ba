// clock_relation.h - how a camera's clock relates to this computer's
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Leads from a camera's timestamps to the computer's clock, as both stood when the recording
/// began.
struct ClockRelation {
    std::int64_t offsetNs = 0;       ///< added to a timestamp it gives nanoseconds since 1970, UTC
    std::uint64_t uncertaintyNs = 0; ///< how far off that may be, see `method`
    /// The camera's command that latches its clock: the true offset is no further away than the
    /// uncertainty. Or kClockByArrival: the time from a frame's timestamp to its arrival is part of
    /// the offset, and the uncertainty is how far the arrivals scatter.
    std::string method;

    bool operator==(const ClockRelation&) const = default;
};

inline constexpr const char* kClockByArrival = "arrival";

/// Relates the clocks by the first frames of a recording. One thread.
class ArrivalClock {
public:
    /// A frame with this timestamp of the camera arrived at this time of the computer's clock.
    void Add(std::uint64_t timestampNs, std::uint64_t unixNs);
    /// By the frame that took least; empty without frames.
    std::optional<ClockRelation> Relation() const;
    /// False when the frames show that their timestamps are of another clock: they would have come
    /// before they were taken, or long afterwards.
    bool Agrees(const ClockRelation& latched) const;

private:
    std::vector<std::int64_t> differences; // of the first frames
};
