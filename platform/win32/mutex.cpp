// mutex.cpp - critical section, which needs a system call only under contention
#include "platform/mutex.h"

#include <windows.h>

namespace platform {

struct Mutex::Impl {
    Impl() { InitializeCriticalSection(&section); }
    ~Impl() { DeleteCriticalSection(&section); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    CRITICAL_SECTION section;
};

Mutex::Mutex() : impl(std::make_unique<Impl>()) {}

Mutex::~Mutex() = default;

void Mutex::Lock() {
    EnterCriticalSection(&impl->section);
}

bool Mutex::TryLock() {
    return TryEnterCriticalSection(&impl->section) != 0;
}

void Mutex::Unlock() {
    LeaveCriticalSection(&impl->section);
}

} // namespace platform
