// sleep.cpp - choosing between the real sleep and a test's replacement
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
