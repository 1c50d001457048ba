// mutex_probe.h - whether a mutex is held
#pragma once

#include "platform/mutex.h"

#include <thread>

/// True if another thread than the caller could lock the mutex now.
inline bool IsFree(platform::Mutex& mutex) {
    bool free = false;
    std::thread([&] {
        if (mutex.TryLock()) {
            mutex.Unlock();
            free = true;
        }
    }).join();
    return free;
}
