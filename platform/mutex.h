// mutex.h - recursive mutex with try-lock, known to Clang's thread-safety analysis
#pragma once

#include "platform/annotations.h"

#include <memory>

namespace platform {

/// A recursive mutex: the thread that holds it may lock it again and unlocks it as often. A
/// critical section on Windows. The constructor throws when the system has no mutex to give.
class CAPABILITY("mutex") Mutex {
public:
    Mutex();
    ~Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void Lock() ACQUIRE();
    /// Takes the mutex when it is free (or already this thread's) and never waits.
    bool TryLock() TRY_ACQUIRE(true);
    void Unlock() RELEASE();

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

/// Holds a mutex for a scope.
class SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutexToHold) ACQUIRE(mutexToHold) : mutex(mutexToHold) {
        mutex.Lock();
    }
    ~MutexLock() RELEASE() { mutex.Unlock(); }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    Mutex& mutex;
};

} // namespace platform
