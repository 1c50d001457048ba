// scripted_sleep.cpp - the settling pauses in the test's hands
#include "tests/module/scripted_sleep.h"

#include "platform/sleep.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace {

// The replacement is a plain function, so what it knows lies here.
std::mutex mutex;
std::condition_variable changed;
std::vector<std::uint32_t> pauses;
bool gateOpen = true;
unsigned sleepers = 0;

void Sleep(std::uint32_t milliseconds) {
    std::unique_lock lock(mutex);
    pauses.push_back(milliseconds);
    ++sleepers;
    changed.notify_all();
    changed.wait(lock, [] { return gateOpen; });
    --sleepers;
}

} // namespace

ScriptedSleep::ScriptedSleep() {
    Take();
    Open();
    platform::SetSleepFunction(&Sleep);
}

ScriptedSleep::~ScriptedSleep() {
    Open();
    platform::SetSleepFunction(nullptr);
}

void ScriptedSleep::Shut() {
    const std::lock_guard lock(mutex);
    gateOpen = false;
}

void ScriptedSleep::Open() {
    const std::lock_guard lock(mutex);
    gateOpen = true;
    changed.notify_all();
}

bool ScriptedSleep::WaitForSleeper() {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, std::chrono::seconds(10), [] { return sleepers > 0; });
}

std::vector<std::uint32_t> ScriptedSleep::Take() {
    const std::lock_guard lock(mutex);
    return std::exchange(pauses, {});
}
