// delayed_commands.cpp - lines of the control interface that run later
#include "pxnc/simulator/delayed_commands.h"

#include "pxnc/simulator/commands.h"

#include <utility>

namespace pxsim {

DelayedCommands::~DelayedCommands() {
    Stop();
}

bool DelayedCommands::Add(std::uint64_t delayMs, const std::string& line) {
    platform::MutexLock lock(mutex);
    if (ending) {
        return false;
    }
    if (!thread.IsJoinable()) {
        thread = platform::Thread::Start(&DelayedCommands::ThreadProcedure, this, 0);
    }
    if (!thread.IsJoinable()) {
        return false;
    }
    lines.emplace(skeleton::Clock::now() + std::chrono::milliseconds(delayMs), line);
    changed.NotifyAll();
    return true;
}

void DelayedCommands::WaitForDueLines() {
    platform::MutexLock lock(mutex);
    const auto isDue = [this]() REQUIRES(mutex) {
        return !lines.empty() && lines.begin()->first <= skeleton::Clock::now();
    };
    while (!ending && !thread.IsCurrent() && (runningLine || isDue())) {
        changed.Wait(mutex);
    }
}

void DelayedCommands::Clear() {
    platform::MutexLock lock(mutex);
    lines.clear();
    changed.NotifyAll();
}

void DelayedCommands::Stop() {
    platform::Thread last;
    {
        platform::MutexLock lock(mutex);
        ending = true;
        changed.NotifyAll();
        last = std::move(thread);
    }
    last.Join(); // the thread needs the mutex to end
}

void DelayedCommands::ThreadProcedure(void* self) {
    static_cast<DelayedCommands*>(self)->Run();
}

void DelayedCommands::Run() {
    platform::MutexLock lock(mutex);
    while (!ending) {
        if (lines.empty()) {
            changed.Wait(mutex);
            continue;
        }
        const auto first = lines.begin();
        const skeleton::Clock::time_point due = first->first;
        if (skeleton::Clock::now() < due) {
            changed.WaitUntil(mutex, due);
            continue;
        }
        const std::string line = std::move(first->second);
        lines.erase(first);
        runningLine = true;
        mutex.Unlock(); // a line may add another
        RunUnattended(line);
        mutex.Lock();
        runningLine = false;
        changed.NotifyAll();
    }
}

} // namespace pxsim
