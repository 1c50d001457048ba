#include "pxnc/simulator/condition.h"

namespace pxsim {
namespace {

// What std::condition_variable_any wants to lock; the analysis follows the caller's REQUIRES.
class Lockable {
public:
    explicit Lockable(platform::Mutex& mutexToUse) : mutex(mutexToUse) {}
    void lock() NO_THREAD_SAFETY_ANALYSIS { mutex.Lock(); }
    void unlock() NO_THREAD_SAFETY_ANALYSIS { mutex.Unlock(); }

private:
    platform::Mutex& mutex;
};

} // namespace

void Condition::Wait(platform::Mutex& mutex) {
    Lockable lockable(mutex);
    condition.wait(lockable);
}

void Condition::WaitUntil(platform::Mutex& mutex, Clock::time_point when) {
    Lockable lockable(mutex);
    condition.wait_until(lockable, when);
}

} // namespace pxsim
