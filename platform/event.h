// event.h - manual-reset event
#pragma once

#include <cstdint>
#include <memory>

namespace platform {

/// Timeout in milliseconds that never expires.
inline constexpr std::uint32_t kInfinite = 0xFFFFFFFFu;

/// A manual-reset event, initially unsignalled. All operations may be called from any thread.
class Event {
public:
    Event();
    ~Event();
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    /// False when the event could not be created. Set and Reset then do nothing; IsSet and Wait
    /// return false at once.
    bool IsValid() const;
    void Set();
    void Reset();
    /// Takes no lock. Set may not have returned yet: only after Wait may the event be destroyed
    /// without knowing more.
    bool IsSet() const;
    /// Waits up to `timeoutMs` milliseconds (kInfinite: no limit) for the event. True when it is
    /// signalled, false on timeout. On Windows a timeout may come up to 16 ms early, since it is
    /// counted in timer ticks.
    bool Wait(std::uint32_t timeoutMs) const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
