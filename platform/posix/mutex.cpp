// mutex.cpp - the standard library's recursive mutex
#include "platform/mutex.h"

#include <mutex>

namespace platform {

struct Mutex::Impl {
    std::recursive_mutex mutex;
};

Mutex::Mutex() : impl(std::make_unique<Impl>()) {}

Mutex::~Mutex() = default;

void Mutex::Lock() {
    impl->mutex.lock();
}

bool Mutex::TryLock() {
    return impl->mutex.try_lock();
}

void Mutex::Unlock() {
    impl->mutex.unlock();
}

} // namespace platform
