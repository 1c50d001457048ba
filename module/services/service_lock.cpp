// service_lock.cpp - what excludes services from one another and from opening and closing
#include "services/service_lock.h"

namespace pyxen {

void ServiceLock::Lock() NO_THREAD_SAFETY_ANALYSIS {
    mutex.Lock();
    owner = std::this_thread::get_id();
    ++depth;
}

void ServiceLock::Unlock() NO_THREAD_SAFETY_ANALYSIS {
    if (--depth == 0) {
        owner = std::thread::id();
    }
    mutex.Unlock();
}

bool ServiceLock::Enter(bool mayWait) NO_THREAD_SAFETY_ANALYSIS {
    if (IsHeldHere()) {
        return false;
    }
    if (mayWait) {
        mutex.Lock();
    } else if (!mutex.TryLock()) {
        return false;
    }
    owner = std::this_thread::get_id();
    ++depth;
    return true;
}

} // namespace pyxen
