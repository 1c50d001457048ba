// rate_meter.h - how often something happens
#pragma once

#include <cstdint>
#include <deque>

/// Happenings per second over the last second. Times in nanoseconds, never going back. One thread.
class RateMeter {
public:
    void Add(std::uint64_t time);
    /// 0 when fewer than two happened in the second before `now`.
    double Rate(std::uint64_t now) const;

private:
    std::deque<std::uint64_t> times;
};
