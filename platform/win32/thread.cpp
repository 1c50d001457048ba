// thread.cpp - Windows threads
#include "platform/thread.h"

#include <windows.h>

#include <process.h>

#include <limits>
#include <new>
#include <utility>

namespace platform {

struct Thread::Impl {
    Impl(Procedure procedureToRun, void* itsArgument)
        : procedure(procedureToRun), argument(itsArgument) {}
    ~Impl() {
        if (handle) {
            CloseHandle(handle);
        }
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    static unsigned __stdcall Run(void* self) {
        // Copied, since a thread that joins itself deletes its Impl.
        const auto* impl = static_cast<const Impl*>(self);
        const Procedure procedure = impl->procedure;
        void* const argument = impl->argument;
        procedure(argument);
        return 0;
    }

    const Procedure procedure;
    void* const argument;
    HANDLE handle = nullptr;
    unsigned id = 0;
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
    if (stackSize > std::numeric_limits<unsigned>::max()) {
        return started;
    }
    std::unique_ptr<Impl> impl(new (std::nothrow) Impl(procedure, argument));
    if (!impl) {
        return started;
    }
    // Created suspended, so that its id is stored before it can call IsCurrent.
    const auto handle = _beginthreadex(nullptr, static_cast<unsigned>(stackSize), &Impl::Run,
                                       impl.get(), CREATE_SUSPENDED, &impl->id);
    impl->handle = reinterpret_cast<HANDLE>(handle);
    if (impl->handle) {
        ResumeThread(impl->handle);
        started.impl = std::move(impl);
    }
    return started;
}

bool Thread::IsJoinable() const {
    return impl != nullptr;
}

bool Thread::IsCurrent() const {
    return impl && impl->id == GetCurrentThreadId();
}

void Thread::Join() {
    if (impl && !IsCurrent()) {
        WaitForSingleObject(impl->handle, INFINITE);
    }
    impl.reset();
}

} // namespace platform
