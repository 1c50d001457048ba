// mutex.cpp - the system's mutex object
#include "platform/mutex.h"

#include <windows.h>

#include <system_error>

namespace platform {

struct Mutex::Impl {
    Impl() : handle(CreateMutexA(nullptr, FALSE, nullptr)) {
        if (!handle) {
            throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
        }
    }
    ~Impl() { CloseHandle(handle); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    // A mutex whose holder's thread ended goes to the next one that waits.
    bool Wait(DWORD timeoutMs) const {
        const DWORD result = WaitForSingleObject(handle, timeoutMs);
        return result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
    }

    const HANDLE handle;
};

Mutex::Mutex() : impl(std::make_unique<Impl>()) {}

Mutex::~Mutex() = default;

void Mutex::Lock() {
    impl->Wait(INFINITE);
}

bool Mutex::TryLock() {
    return impl->Wait(0);
}

void Mutex::Unlock() {
    ReleaseMutex(impl->handle);
}

} // namespace platform
