// event.h - manual-reset event
#pragma once

#include <cstdint>
#include <memory>

namespace platform {

/// Wait limit that never runs out.
inline constexpr std::uint32_t kInfinite = 0xFFFFFFFFu;

/// A manual-reset event, created unsignalled. Every operation may be called from any thread.
class Event {
public:
    Event();
    ~Event();
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    /// False when the system had no event to give; the other operations then do nothing.
    bool IsValid() const;
    void Set();
    void Reset();
    bool IsSet() const;
    /// Waits at most `timeoutMs` milliseconds (kInfinite: without limit); true when signalled.
    bool Wait(std::uint32_t timeoutMs) const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
