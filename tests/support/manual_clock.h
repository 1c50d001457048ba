// manual_clock.h - a clock that the test advances
#pragma once

#include <cstdint>

namespace support {

/// Replaces platform::MonotonicNanoseconds of this program for its life: time stands still until
/// Advance. Libraries that the program loads keep their own clocks. One at a time.
class ManualClock {
public:
    ManualClock();
    ~ManualClock();
    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;

    /// Any thread.
    void Advance(std::uint64_t milliseconds);
    /// How often the clock has been read, which shows how far another thread has come. Any thread.
    std::uint64_t Readings() const;
};

} // namespace support
