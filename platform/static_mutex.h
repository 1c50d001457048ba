// static_mutex.h - a mutex for static storage
#pragma once

#include "platform/annotations.h"

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace platform {

/// A mutex that needs neither construction nor destruction at run time and no memory, so that
/// threads which outlive the end of main, or come before its begin, may use it. Not recursive; to
/// be held for some instructions only.
class CAPABILITY("mutex") StaticMutex {
public:
    constexpr StaticMutex() = default;
    StaticMutex(const StaticMutex&) = delete;
    StaticMutex& operator=(const StaticMutex&) = delete;

    void Lock() ACQUIRE();
    void Unlock() RELEASE();

private:
#if defined(_WIN32)
    void* native = nullptr; // an SRWLOCK at rest
#else
    pthread_mutex_t native = PTHREAD_MUTEX_INITIALIZER;
#endif
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
