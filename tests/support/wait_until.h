// wait_until.h - waiting for a condition that another thread makes true
#pragma once

#include <chrono>
#include <thread>

namespace support {

/// Calls `predicate` every millisecond until it returns true or `timeoutMs` milliseconds have
/// passed, and returns its last result. Does not use platform::SleepMs, which a test may have
/// replaced.
template <typename Predicate>
bool WaitUntil(Predicate predicate, unsigned timeoutMs = 10000) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!predicate()) {
        if (std::chrono::steady_clock::now() >= end) {
            return predicate();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace support
