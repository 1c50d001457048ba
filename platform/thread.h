// thread.h - joinable thread with a selectable stack size
#pragma once

#include <cstddef>
#include <memory>

namespace platform {

/// Owns a thread, or nothing. Destroying the object or assigning to it joins the thread it owns.
/// The object is not synchronised: one thread at a time.
class Thread {
public:
    using Procedure = void (*)(void* argument);

    Thread();
    ~Thread();
    Thread(Thread&& other) noexcept;
    Thread& operator=(Thread&& other) noexcept;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    /// Starts a thread that calls `procedure(argument)`. `stackSize` is in bytes, 0 for the
    /// system's default. Windows uses it unchanged; elsewhere it is raised to the system's minimum
    /// plus a reserve for the C library and sanitizers. When the thread cannot be created, the
    /// result is not joinable.
    static Thread Start(Procedure procedure, void* argument, std::size_t stackSize);

    /// True while the object owns a thread, whether that is still running or not.
    bool IsJoinable() const;
    /// True when the calling thread is the owned one.
    bool IsCurrent() const;
    /// Waits for the owned thread to end, without limit, and releases it. Does nothing when there
    /// is none. A thread that joins itself is detached instead and keeps running.
    void Join();

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
