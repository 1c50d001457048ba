// condition.h - waiting for a change of what a platform::Mutex guards
#pragma once

#include "platform/mutex.h"
#include "pxnc/skeleton/clock.h"

#include <condition_variable>
#include <mutex>
#include <optional>

namespace skeleton {

/// A condition variable for platform::Mutex. The mutex must be held exactly once by the waiter.
class Condition {
public:
    /// Waits for NotifyAll; may return without one.
    void Wait(platform::Mutex& mutex) REQUIRES(mutex);
    /// Returns at `when` at the latest; waiters look at their condition again in any case.
    void WaitUntil(platform::Mutex& mutex, Clock::time_point when) REQUIRES(mutex);
    /// Wakes all waiters.
    void NotifyAll();

private:
    // Held from before the waiter's mutex is released until the wait has begun, so that no
    // notification and no step of the clock falls between the two.
    std::mutex beginning;
    std::condition_variable condition;
};

/// Ends every WaitUntil of this process, whatever its time.
void WakeTimedWaits();
/// The earliest time for which a WaitUntil waits; nothing when there is none.
std::optional<Clock::time_point> NextTimedWait();

} // namespace skeleton
