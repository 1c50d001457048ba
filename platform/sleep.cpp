// sleep.cpp - the real sleep or the replacement set by a test
#include "platform/sleep.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace platform {

namespace {

std::atomic<SleepFunction> replacementSleep{nullptr};

} // namespace

void SleepMs(std::uint32_t milliseconds) {
    if (const SleepFunction replacement = replacementSleep.load()) {
        replacement(milliseconds);
        return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void SetSleepFunction(SleepFunction replacement) {
    replacementSleep.store(replacement);
}

} // namespace platform
