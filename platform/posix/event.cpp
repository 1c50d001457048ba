// event.cpp - manual-reset event on a condition variable
#include "platform/event.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>

namespace platform {

// std::condition_variable requires a std::mutex.
struct Event::Impl {
    std::mutex mutex;
    std::condition_variable changed;
    std::atomic<bool> signalled{false}; // changed under the mutex
};

Event::Event() : impl(new (std::nothrow) Impl) {}

Event::~Event() = default;

bool Event::IsValid() const {
    return impl != nullptr;
}

void Event::Set() {
    if (!impl) {
        return;
    }
    // Notify while holding the mutex: a waiter may destroy the event as soon as it sees the flag.
    const std::lock_guard<std::mutex> lock(impl->mutex);
    impl->signalled = true;
    impl->changed.notify_all();
}

void Event::Reset() {
    if (!impl) {
        return;
    }
    const std::lock_guard<std::mutex> lock(impl->mutex);
    impl->signalled = false;
}

// Without the mutex: every frame is requeued after such a look.
bool Event::IsSet() const {
    return impl && impl->signalled;
}

bool Event::Wait(std::uint32_t timeoutMs) const {
    if (!impl || timeoutMs == 0) {
        return IsSet();
    }
    const auto isSignalled = [this] {
        return impl->signalled.load();
    };
    std::unique_lock<std::mutex> lock(impl->mutex);
    if (timeoutMs == kInfinite) {
        impl->changed.wait(lock, isSignalled);
        return true;
    }
    return impl->changed.wait_for(lock, std::chrono::milliseconds(timeoutMs), isSignalled);
}

} // namespace platform
