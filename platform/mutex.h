// mutex.h - recursive mutex, annotated for Clang's thread-safety analysis
#pragma once

#include "platform/annotations.h"

#include <memory>

namespace platform {

/// A recursive mutex: the thread that holds it may lock it again and must unlock it as many times.
/// A critical section on Windows. The constructor throws std::bad_alloc when out of memory.
class CAPABILITY("mutex") Mutex {
public:
    Mutex();
    ~Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void Lock() ACQUIRE();
    /// Locks the mutex unless another thread holds it; true when locked. Never waits.
    bool TryLock() TRY_ACQUIRE(true);
    /// The calling thread must hold the mutex.
    void Unlock() RELEASE();

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

/// Locks a mutex for the current scope.
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
