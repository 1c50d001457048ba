// faults.cpp - faults on demand
#include "pxnc/simulator/faults.h"

#include "platform/sleep.h"
#include "pxnc/simulator/commands.h"
#include "pxnc/skeleton/never_destroyed.h"

#include <algorithm>
#include <cstring>

namespace pxsim {
namespace {

bool Concerns(const std::string& faultEntry, const char* entry) {
    return faultEntry == "any" || faultEntry == entry;
}

} // namespace

Faults& Faults::Instance() {
    static skeleton::NeverDestroyed<Faults> instance;
    return instance.Get();
}

PxnError Faults::OnCall(const char* entry) {
    ++calls;
    if (!armed) {
        return PxnErrSuccess;
    }
    RunLinesAtCall(entry);
    std::uint32_t delay = 0;
    PxnError result = PxnErrSuccess;
    {
        platform::MutexLock lock(mutex);
        for (const auto& [name, milliseconds] : delays) {
            if (Concerns(name, entry)) {
                delay += milliseconds;
            }
        }
        while (std::any_of(stuck.begin(), stuck.end(),
                           [entry](const auto& one) { return Concerns(one, entry); })) {
            changed.Wait(mutex);
        }
        result = Strike(entry);
    }
    if (delay > 0) {
        platform::SleepMs(delay);
    }
    return result;
}

void Faults::RunLinesAtCall(const char* entry) {
    std::vector<std::string> due;
    {
        platform::MutexLock lock(mutex);
        for (CallLine& one : callLines) {
            if (Concerns(one.entry, entry) && --one.remaining == 0) {
                due.push_back(one.line);
            }
        }
        std::erase_if(callLines, [](const CallLine& one) { return one.remaining == 0; });
    }
    for (const std::string& line : due) {
        RunUnattended(line);
    }
}

PxnError Faults::Strike(const char* entry) {
    PxnError result = PxnErrSuccess;
    for (CallFault& fault : callFaults) {
        if (!Concerns(fault.entry, entry)) {
            continue;
        }
        const bool strikes = fault.always || (fault.remaining > 0 && --fault.remaining == 0);
        if (strikes && result == PxnErrSuccess) {
            result = fault.code;
        }
    }
    return result;
}

std::int64_t Faults::TakeCountChange(const char* entry) {
    if (!armed) {
        return 0;
    }
    platform::MutexLock lock(mutex);
    auto found = countChanges.find(entry);
    if (found == countChanges.end()) {
        return 0;
    }
    const std::int64_t by = found->second;
    countChanges.erase(found);
    return by;
}

FrameFault Faults::OnFrame(std::uint64_t frame) {
    if (!frameFaultsArmed) {
        return FrameFault::kNone;
    }
    platform::MutexLock lock(mutex);
    if (auto found = frameFaults.find(frame); found != frameFaults.end()) {
        return found->second;
    }
    const bool strikes = randomPercent > 0 && random() % 100 < randomPercent;
    return strikes ? randomFault : FrameFault::kNone;
}

std::vector<Faults::ScheduledPlug> Faults::TakeScheduled(std::uint64_t frame) {
    platform::MutexLock lock(mutex);
    std::vector<ScheduledPlug> due;
    std::copy_if(scheduled.begin(), scheduled.end(), std::back_inserter(due),
                 [frame](const ScheduledPlug& one) { return one.frame == frame; });
    std::erase_if(scheduled, [frame](const ScheduledPlug& one) { return one.frame == frame; });
    scheduledCount = scheduled.size();
    return due;
}

void Faults::FailCall(const std::string& entry, std::uint64_t call, PxnError code) {
    platform::MutexLock lock(mutex);
    callFaults.push_back({entry, false, call, code});
    armed = true;
}

void Faults::FailAlways(const std::string& entry, PxnError code) {
    platform::MutexLock lock(mutex);
    callFaults.push_back({entry, true, 0, code});
    armed = true;
}

void Faults::RunAtCall(const std::string& entry, std::uint64_t call, const std::string& line) {
    platform::MutexLock lock(mutex);
    callLines.push_back({entry, call, line});
    armed = true;
}

void Faults::Delay(const std::string& entry, std::uint32_t milliseconds) {
    platform::MutexLock lock(mutex);
    delays[entry] = milliseconds;
    armed = true;
}

void Faults::Stick(const std::string& entry) {
    platform::MutexLock lock(mutex);
    stuck.insert(entry);
    armed = true;
}

void Faults::ChangeCount(const std::string& entry, std::int64_t by) {
    platform::MutexLock lock(mutex);
    countChanges[entry] = by;
    armed = true;
}

void Faults::SetFrameFault(FrameFault fault, std::uint64_t frame) {
    platform::MutexLock lock(mutex);
    frameFaults[frame] = fault;
    frameFaultsArmed = true;
}

void Faults::SetRandomFrames(std::uint32_t seed, unsigned percent, FrameFault fault) {
    platform::MutexLock lock(mutex);
    random.seed(seed);
    randomPercent = percent;
    randomFault = fault;
    frameFaultsArmed = true;
}

void Faults::Schedule(ScheduledPlug plug) {
    platform::MutexLock lock(mutex);
    scheduled.push_back(std::move(plug));
    scheduledCount = scheduled.size();
}

void Faults::Clear() {
    platform::MutexLock lock(mutex);
    callFaults.clear();
    callLines.clear();
    delays.clear();
    stuck.clear();
    countChanges.clear();
    frameFaults.clear();
    scheduled.clear();
    scheduledCount = 0;
    randomPercent = 0;
    armed = false;
    frameFaultsArmed = false;
    changed.NotifyAll();
}

} // namespace pxsim
