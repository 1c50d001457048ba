// thread.cpp - POSIX threads
#include "platform/thread.h"

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <utility>

namespace platform {

namespace {

// The C library also keeps thread-local storage and signal frames on a thread's stack. They grow
// with the libraries that are loaded, and sanitizers enlarge every stack frame. Untouched stack
// pages take no memory, so a generous reserve costs nothing.
constexpr std::size_t kStackReserve = 256 * 1024;

class ThreadAttributes {
public:
    ThreadAttributes() : valid(pthread_attr_init(&attributes) == 0) {}
    ~ThreadAttributes() {
        if (valid) {
            pthread_attr_destroy(&attributes);
        }
    }
    ThreadAttributes(const ThreadAttributes&) = delete;
    ThreadAttributes& operator=(const ThreadAttributes&) = delete;

    bool SetStackSize(std::size_t bytes) {
        return valid && pthread_attr_setstacksize(&attributes, bytes) == 0;
    }
    bool IsValid() const { return valid; }
    const pthread_attr_t* Get() const { return &attributes; }

private:
    pthread_attr_t attributes;
    bool valid;
};

std::size_t LeastStackSize() {
    const long least = sysconf(_SC_THREAD_STACK_MIN);
    return static_cast<std::size_t>(std::max(least, 0L)) + kStackReserve;
}

} // namespace

struct Thread::Impl {
    Procedure procedure;
    void* argument;
    pthread_t thread{};

    static void* Run(void* self) {
        // Copied, since a thread that joins itself deletes its Impl.
        const auto* impl = static_cast<const Impl*>(self);
        const Procedure procedure = impl->procedure;
        void* const argument = impl->argument;
        procedure(argument);
        return nullptr;
    }
};

Thread::Thread() = default;

Thread::~Thread() {
    Join();
}

Thread::Thread(Thread&& other) noexcept = default;

Thread& Thread::operator=(Thread&& other) noexcept {
    if (this != &other) {
        Join();
        impl = std::move(other.impl);
    }
    return *this;
}

Thread Thread::Start(Procedure procedure, void* argument, std::size_t stackSize) {
    Thread started;
    ThreadAttributes attributes;
    if (!attributes.IsValid()) {
        return started;
    }
    if (stackSize != 0 && !attributes.SetStackSize(std::max(stackSize, LeastStackSize()))) {
        return started;
    }
    std::unique_ptr<Impl> impl(new (std::nothrow) Impl{procedure, argument});
    if (impl && pthread_create(&impl->thread, attributes.Get(), &Impl::Run, impl.get()) == 0) {
        started.impl = std::move(impl);
    }
    return started;
}

bool Thread::IsJoinable() const {
    return impl != nullptr;
}

bool Thread::IsCurrent() const {
    return impl && pthread_equal(impl->thread, pthread_self()) != 0;
}

void Thread::Join() {
    if (!impl) {
        return;
    }
    if (IsCurrent()) {
        pthread_detach(impl->thread);
    } else {
        pthread_join(impl->thread, nullptr);
    }
    impl.reset();
}

} // namespace platform
