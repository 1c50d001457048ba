// rate_meter.h - measures the rate of events
#pragma once

#include <cstdint>
#include <deque>

/// Events per second over the last second. Times are in nanoseconds and never decrease. One thread.
class RateMeter {
public:
    void Add(std::uint64_t time);
    /// 0 if there were fewer than two events in the second before `now`.
    double Rate(std::uint64_t now) const;

private:
    std::deque<std::uint64_t> times;
};
