// service_lock.h - what excludes services from one another and from opening and closing
#pragma once

#include "platform/mutex.h"

#include <atomic>
#include <thread>

namespace pyxen {

/// Held by one service at a time, and by the operations of the grabber that change handles, caches
/// or lists. Any thread.
///
/// Services hold it while they call the SDK, and never while they call the host, its receivers or
/// its log. The grabber's operations also call the host with it: a service that the same thread
/// calls there is refused. The SDK waits for its callbacks while a camera is closed, so a service
/// inside a callback does not wait.
class CAPABILITY("mutex") ServiceLock {
public:
    /// For the grabber's operations: waits. The thread that holds the lock may lock it again.
    void Lock() ACQUIRE();
    void Unlock() RELEASE();
    /// For services: false, without waiting, when this thread holds the lock; and, unless it may
    /// wait, when another one does.
    bool Enter(bool mayWait) TRY_ACQUIRE(true);

private:
    bool IsHeldHere() const { return owner.load() == std::this_thread::get_id(); }

    platform::Mutex mutex;
    std::atomic<std::thread::id> owner{}; // written by the thread that holds the mutex
    unsigned depth = 0;                   // of that thread
};

/// Locks for the scope, as an operation of the grabber.
class SCOPED_CAPABILITY ServiceLockHold {
public:
    explicit ServiceLockHold(ServiceLock& lockToHold) ACQUIRE(lockToHold) : lock(lockToHold) {
        lock.Lock();
    }
    ~ServiceLockHold() RELEASE() { lock.Unlock(); }
    ServiceLockHold(const ServiceLockHold&) = delete;
    ServiceLockHold& operator=(const ServiceLockHold&) = delete;

private:
    ServiceLock& lock;
};

} // namespace pyxen
