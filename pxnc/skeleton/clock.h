// clock.h - the time that paces, delays and timeouts of an SDK follow
#pragma once

#include <chrono>

namespace skeleton {

/// Monotonic time, which a test may stop and advance. Any thread.
struct Clock {
    // NOLINTBEGIN(readability-identifier-naming): the names that std::chrono requires
    ///@{
    /// What std::chrono requires of a clock.
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<Clock>;
    static constexpr bool is_steady = true;
    ///@}

    /// The present time.
    static time_point now() noexcept;
    // NOLINTEND(readability-identifier-naming)
};

/// Stops the clock of this process. Time then passes only in AdvanceClock and in sleeps, which
/// return at once and advance the clock by their length. No effect on a stopped clock.
void StopClock();
/// Restarts a stopped clock from where it stands, so that time never goes back.
void StartClock();
/// True between StopClock and StartClock.
bool IsClockStopped();
/// Advances a stopped clock and wakes the threads that wait for a time. False when the clock runs.
bool AdvanceClock(std::chrono::milliseconds by);

} // namespace skeleton
