// thread.h - a joinable thread with a chosen stack size
#pragma once

#include <cstddef>
#include <memory>

namespace platform {

/// A running thread or nothing. Owns the thread's handle; destroying or overwriting a joinable one
/// joins it. The object itself takes no lock: one thread at a time.
class Thread {
public:
    using Procedure = void (*)(void* argument);

    Thread();
    ~Thread();
    Thread(Thread&& other) noexcept;
    Thread& operator=(Thread&& other) noexcept;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    /// Starts `procedure(argument)`. `stackSize` in bytes is taken literally on Windows. Elsewhere
    /// it is raised to the least the system allows and what the C library and sanitizers keep on a
    /// stack. 0 asks for the system's default.
    /// Returns a thread that is not joinable when the system refused.
    static Thread Start(Procedure procedure, void* argument, std::size_t stackSize);

    bool IsJoinable() const;
    /// True when called from inside this thread.
    bool IsCurrent() const;
    /// Waits for the end without limit and forgets the thread. Does nothing without one. Called
    /// from inside the thread itself it only forgets, and the thread runs on.
    void Join();

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
