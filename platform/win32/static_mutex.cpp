// static_mutex.cpp - a mutex for static storage on Windows
#include "platform/static_mutex.h"

#include <windows.h>

namespace platform {

namespace {

SRWLOCK* LockIn(void*& storage) {
    static_assert(sizeof(SRWLOCK) == sizeof storage && alignof(SRWLOCK) == alignof(void*));
    return reinterpret_cast<SRWLOCK*>(&storage);
}

} // namespace

void StaticMutex::Lock() {
    AcquireSRWLockExclusive(LockIn(native));
}

void StaticMutex::Unlock() {
    ReleaseSRWLockExclusive(LockIn(native));
}

} // namespace platform
