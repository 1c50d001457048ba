// wait_until.h - waiting for a condition that another thread brings about
#pragma once

#include <chrono>
#include <thread>

namespace support {

/// Asks `predicate` again and again until it answers true or `timeoutMs` milliseconds are over;
/// returns its last answer. Rests on the real clock, also while a test has replaced
/// platform::SleepMs.
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
