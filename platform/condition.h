// condition.h - waiting for what other threads change under a mutex
#pragma once

#include "platform/mutex.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>

namespace platform {

/// A condition variable for platform::Mutex. The caller of the waits holds the mutex once, and
/// holds it again when they return, which they may do without a reason: check what is waited for.
/// Any thread may notify; a notification after a change under the mutex is not missed.
class Condition {
public:
    void Wait(Mutex& mutex) REQUIRES(mutex) {
        Lockable lockable{mutex};
        condition.wait(lockable);
    }
    void WaitFor(Mutex& mutex, std::uint32_t milliseconds) REQUIRES(mutex) {
        Lockable lockable{mutex};
        condition.wait_for(lockable, std::chrono::milliseconds(milliseconds));
    }
    void NotifyOne() { condition.notify_one(); }
    void NotifyAll() { condition.notify_all(); }

private:
    // With the names that the standard library wants.
    struct Lockable {
        Mutex& mutex;
        void lock() NO_THREAD_SAFETY_ANALYSIS { mutex.Lock(); }
        void unlock() NO_THREAD_SAFETY_ANALYSIS { mutex.Unlock(); }
    };

    std::condition_variable_any condition;
};

} // namespace platform
