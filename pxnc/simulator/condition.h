// condition.h - waiting for a change of what a platform::Mutex guards
#pragma once

#include "platform/mutex.h"

#include <chrono>
#include <condition_variable>

namespace pxsim {

using Clock = std::chrono::steady_clock;

/// A condition variable for platform::Mutex. The mutex must be held exactly once by the waiter.
class Condition {
public:
    void Wait(platform::Mutex& mutex) REQUIRES(mutex);
    /// Returns at `when` at the latest; waiters look at their condition again in any case.
    void WaitUntil(platform::Mutex& mutex, Clock::time_point when) REQUIRES(mutex);
    void NotifyAll() { condition.notify_all(); }

private:
    std::condition_variable_any condition;
};

} // namespace pxsim
