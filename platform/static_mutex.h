// static_mutex.h - a mutex for static storage
#pragma once

#include "platform/annotations.h"

#include <atomic>

namespace platform {

/// A mutex that needs neither construction nor destruction at run time and no memory, so that
/// threads which outlive the end of main, or come before its begin, may use it. Not recursive; to
/// be held for some instructions only.
class CAPABILITY("mutex") StaticMutex {
public:
    constexpr StaticMutex() = default;
    StaticMutex(const StaticMutex&) = delete;
    StaticMutex& operator=(const StaticMutex&) = delete;

    void Lock() ACQUIRE() {
        while (isHeld.test_and_set(std::memory_order_acquire)) {
            isHeld.wait(true, std::memory_order_relaxed);
        }
    }
    void Unlock() RELEASE() {
        isHeld.clear(std::memory_order_release);
        isHeld.notify_one();
    }

private:
    std::atomic_flag isHeld;
};

/// Locks a static mutex for the current scope.
class SCOPED_CAPABILITY StaticMutexLock {
public:
    explicit StaticMutexLock(StaticMutex& mutexToHold) ACQUIRE(mutexToHold) : mutex(mutexToHold) {
        mutex.Lock();
    }
    ~StaticMutexLock() RELEASE() { mutex.Unlock(); }
    StaticMutexLock(const StaticMutexLock&) = delete;
    StaticMutexLock& operator=(const StaticMutexLock&) = delete;

private:
    StaticMutex& mutex;
};

} // namespace platform
