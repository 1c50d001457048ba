// clock.cpp - stopping, advancing and restarting the clock of an SDK
#include "pxnc/skeleton/clock.h"

#include "platform/clock.h"
#include "platform/mutex.h"
#include "platform/sleep.h"
#include "pxnc/skeleton/condition.h"
#include "pxnc/skeleton/never_destroyed.h"

#include <atomic>

namespace skeleton {
namespace {

// Read by plain functions, which is all that the platform takes as a replacement.
std::atomic<std::uint64_t> stoppedAt{0};
std::atomic<std::uint64_t> ahead{0}; // of real time, modulo 2^64
std::atomic<bool> stopped{false};

platform::Mutex& ChangeMutex() {
    static NeverDestroyed<platform::Mutex> mutex;
    return mutex.Get();
}

std::uint64_t RealNanoseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

std::uint64_t StoppedNanoseconds() {
    return stoppedAt;
}

std::uint64_t RestartedNanoseconds() {
    return RealNanoseconds() + ahead;
}

void SleepOnStoppedClock(std::uint32_t milliseconds) {
    if (!AdvanceClock(std::chrono::milliseconds(milliseconds))) {
        platform::SleepMs(milliseconds); // restarted meanwhile
    }
}

} // namespace

Clock::time_point Clock::now() noexcept {
    return time_point(duration(static_cast<rep>(platform::MonotonicNanoseconds())));
}

void StopClock() {
    platform::MutexLock lock(ChangeMutex());
    if (stopped) {
        return;
    }
    stoppedAt = platform::MonotonicNanoseconds();
    platform::SetClockFunction(&StoppedNanoseconds);
    platform::SetSleepFunction(&SleepOnStoppedClock);
    stopped = true;
}

void StartClock() {
    platform::MutexLock lock(ChangeMutex());
    if (!stopped) {
        return;
    }
    ahead = stoppedAt - RealNanoseconds();
    platform::SetClockFunction(&RestartedNanoseconds);
    platform::SetSleepFunction(nullptr);
    stopped = false;
    WakeTimedWaits();
}

bool IsClockStopped() {
    return stopped;
}

bool AdvanceClock(std::chrono::milliseconds by) {
    platform::MutexLock lock(ChangeMutex());
    if (!stopped) {
        return false;
    }
    stoppedAt += static_cast<std::uint64_t>(std::chrono::nanoseconds(by).count());
    WakeTimedWaits();
    return true;
}

} // namespace skeleton
