// event.cpp - the system's manual-reset event
#include "platform/event.h"

#include <windows.h>

#include <new>

namespace platform {

static_assert(kInfinite == INFINITE);

struct Event::Impl {
    Impl() : handle(CreateEventA(nullptr, TRUE, FALSE, nullptr)) {}
    ~Impl() {
        if (handle) {
            CloseHandle(handle);
        }
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    const HANDLE handle;
};

Event::Event() : impl(new (std::nothrow) Impl) {
    if (impl && !impl->handle) {
        impl.reset();
    }
}

Event::~Event() = default;

bool Event::IsValid() const {
    return impl != nullptr;
}

void Event::Set() {
    if (impl) {
        SetEvent(impl->handle);
    }
}

void Event::Reset() {
    if (impl) {
        ResetEvent(impl->handle);
    }
}

bool Event::IsSet() const {
    return Wait(0);
}

bool Event::Wait(std::uint32_t timeoutMs) const {
    return impl && WaitForSingleObject(impl->handle, timeoutMs) == WAIT_OBJECT_0;
}

} // namespace platform
