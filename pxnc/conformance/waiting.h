// waiting.h - waits of a check
#pragma once

#include <chrono>
#include <cstdint>
#include <thread>

namespace conformance {

/// For what must happen.
inline constexpr std::uint32_t kWaitMs = 10000;
/// For what must not happen.
inline constexpr std::uint32_t kQuietMs = 150;

inline void Pause(std::uint32_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// Calls `condition` every millisecond until it returns true or the time has passed, and returns
/// its last result.
template <typename Condition>
bool WaitUntil(Condition condition, std::uint32_t timeoutMs = kWaitMs) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) {
            return condition();
        }
        Pause(1);
    }
    return true;
}

} // namespace conformance
