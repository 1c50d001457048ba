// condition.cpp - timed waits that follow a clock that can be stopped
#include "pxnc/skeleton/condition.h"

#include "pxnc/skeleton/never_destroyed.h"

#include <algorithm>

namespace skeleton {
namespace {

class TimedWait;

/// All that wait for a time. Locked before the conditions' own mutexes.
struct TimedWaits {
    static TimedWaits& Instance() {
        static NeverDestroyed<TimedWaits> instance;
        return instance.Get();
    }

    platform::Mutex mutex;
    TimedWait* first GUARDED_BY(mutex) = nullptr;
};

/// One wait, listed while it lasts. The list is linked through its members, because a wait must not
/// fail when memory is exhausted.
class TimedWait {
public:
    TimedWait(Condition& waitedOn, Clock::time_point waitedFor)
        : condition(waitedOn), when(waitedFor) {
        TimedWaits& waits = TimedWaits::Instance();
        platform::MutexLock lock(waits.mutex);
        next = waits.first;
        if (next) {
            next->previous = this;
        }
        waits.first = this;
    }
    ~TimedWait() {
        TimedWaits& waits = TimedWaits::Instance();
        platform::MutexLock lock(waits.mutex);
        (previous ? previous->next : waits.first) = next;
        if (next) {
            next->previous = previous;
        }
    }
    TimedWait(const TimedWait&) = delete;
    TimedWait& operator=(const TimedWait&) = delete;

    Condition& condition;
    const Clock::time_point when;
    TimedWait* next = nullptr;

private:
    TimedWait* previous = nullptr;
};

} // namespace

void Condition::Wait(platform::Mutex& mutex) {
    std::unique_lock lock(beginning);
    mutex.Unlock();
    condition.wait(lock);
    lock.unlock();
    mutex.Lock();
}

void Condition::WaitUntil(platform::Mutex& mutex, Clock::time_point when) {
    // Listed before the clock is read: a later step of the clock finds this wait.
    const TimedWait listed(*this, when);
    std::unique_lock lock(beginning);
    const bool isStopped = IsClockStopped();
    const Clock::duration rest = when - Clock::now();
    if (rest <= Clock::duration::zero()) {
        return;
    }
    mutex.Unlock();
    if (isStopped) {
        condition.wait(lock);
    } else {
        condition.wait_for(lock, rest);
    }
    lock.unlock();
    mutex.Lock();
}

void Condition::NotifyAll() {
    const std::lock_guard lock(beginning);
    condition.notify_all();
}

void WakeTimedWaits() {
    TimedWaits& waits = TimedWaits::Instance();
    platform::MutexLock lock(waits.mutex);
    for (const TimedWait* wait = waits.first; wait; wait = wait->next) {
        wait->condition.NotifyAll();
    }
}

std::optional<Clock::time_point> NextTimedWait() {
    TimedWaits& waits = TimedWaits::Instance();
    platform::MutexLock lock(waits.mutex);
    std::optional<Clock::time_point> earliest;
    for (const TimedWait* wait = waits.first; wait; wait = wait->next) {
        earliest = std::min(earliest.value_or(wait->when), wait->when);
    }
    return earliest;
}

} // namespace skeleton
