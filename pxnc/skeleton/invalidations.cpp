// invalidations.cpp - registered invalidation callbacks and the thread that calls them
#include "pxnc/skeleton/invalidations.h"

#include "pxnc/skeleton/callback_scope.h"

#include <algorithm>
#include <utility>

namespace skeleton {

Invalidations::~Invalidations() {
    Stop();
}

bool Invalidations::Start() {
    thread = platform::Thread::Start(&Invalidations::ThreadProcedure, this, 0);
    return thread.IsJoinable();
}

void Invalidations::Stop() {
    {
        platform::MutexLock lock(mutex);
        isEnding = true;
        posted.clear();
        changed.NotifyAll();
    }
    thread.Join();
}

void Invalidations::Register(PxnHandle handle, const char* name, PxnInvalidationCallback callback,
                             void* context) {
    platform::MutexLock lock(mutex);
    registrations.push_back({++lastId, handle, name, callback, context});
    ++counts.registered;
}

bool Invalidations::Unregister(PxnHandle handle, const char* name,
                               PxnInvalidationCallback callback) {
    platform::MutexLock lock(mutex);
    const auto newest = std::find_if(
        registrations.rbegin(), registrations.rend(), [&](const Registration& candidate) {
            return candidate.handle == handle && candidate.name == name &&
                   candidate.callback == callback;
        });
    if (newest == registrations.rend()) {
        return false;
    }
    const std::uint64_t id = newest->id;
    registrations.erase(std::next(newest).base());
    ++counts.unregistered;
    WaitWhileRunning(id);
    return true;
}

void Invalidations::UnregisterAll(PxnHandle handle) {
    platform::MutexLock lock(mutex);
    std::vector<std::uint64_t> ids;
    std::erase_if(registrations, [&](const Registration& registration) {
        if (registration.handle == handle) {
            ids.push_back(registration.id);
        }
        return registration.handle == handle;
    });
    counts.unregisteredByClose += ids.size();
    for (const std::uint64_t id : ids) {
        WaitWhileRunning(id);
    }
}

std::vector<Invalidations::Registration> Invalidations::List() const {
    platform::MutexLock lock(mutex);
    return registrations;
}

void Invalidations::Post(PxnHandle handle, const char* name) {
    platform::MutexLock lock(mutex);
    if (std::any_of(registrations.begin(), registrations.end(), [&](const Registration& one) {
            return one.handle == handle && one.name == name;
        })) {
        Push({handle, name, nullptr});
    }
}

void Invalidations::PostWork(PxnHandle handle, Work work) {
    platform::MutexLock lock(mutex);
    Push({handle, nullptr, std::move(work)});
}

void Invalidations::Push(Posted event) {
    posted.push_back(std::move(event));
    ++postedCount;
    changed.NotifyAll();
}

void Invalidations::Drain() {
    DrainUntil(std::nullopt);
}

void Invalidations::DrainPatiently() {
    DrainUntil(Clock::now() + std::chrono::seconds(1));
}

void Invalidations::DrainUntil(std::optional<Clock::time_point> end) {
    if (InsideCallback() || thread.IsCurrent()) {
        return;
    }
    platform::MutexLock lock(mutex);
    const std::uint64_t target = postedCount;
    while (deliveredCount < target && !isEnding) {
        if (!end) {
            changed.Wait(mutex);
        } else if (Clock::now() < *end) {
            changed.WaitUntil(mutex, *end);
        } else {
            return;
        }
    }
}

void Invalidations::ThreadProcedure(void* self) {
    static_cast<Invalidations*>(self)->Run();
}

void Invalidations::Run() {
    for (;;) {
        Posted event{};
        {
            platform::MutexLock lock(mutex);
            while (!isEnding && posted.empty()) {
                changed.Wait(mutex);
            }
            if (isEnding) {
                return;
            }
            event = std::move(posted.front());
            posted.pop_front();
        }
        Deliver(event);
        platform::MutexLock lock(mutex);
        ++deliveredCount;
        changed.NotifyAll();
    }
}

void Invalidations::Deliver(const Posted& event) {
    if (event.name) {
        Call(event.handle, event.name);
        return;
    }
    for (const char* name : event.work()) {
        Call(event.handle, name);
    }
}

unsigned Invalidations::Call(PxnHandle handle, const char* name) {
    platform::MutexLock lock(mutex);
    std::vector<Registration> called;
    std::copy_if(registrations.begin(), registrations.end(), std::back_inserter(called),
                 [&](const Registration& one) { return one.handle == handle && one.name == name; });
    unsigned count = 0;
    for (const Registration& one : called) {
        // A callback before this one may have removed it.
        const bool isPresent =
            std::any_of(registrations.begin(), registrations.end(),
                        [&](const Registration& candidate) { return candidate.id == one.id; });
        if (isPresent && !isEnding) {
            CallOne(one);
            ++count;
        }
    }
    return count;
}

void Invalidations::CallOne(const Registration& one) {
    const std::thread::id self = std::this_thread::get_id();
    running.push_back({one.id, self});
    mutex.Unlock();
    {
        const CallbackScope scope(CallbackKind::kInvalidation);
        one.callback(one.handle, one.name, one.context);
    }
    mutex.Lock();
    running.erase(std::find_if(running.begin(), running.end(), [&](const Running& candidate) {
        return candidate.id == one.id && candidate.thread == self;
    }));
    changed.NotifyAll();
}

void Invalidations::WaitWhileRunning(std::uint64_t id) {
    const auto runsElsewhere = [&](const Running& one) {
        return one.id == id && one.thread != std::this_thread::get_id();
    };
    while (std::any_of(running.begin(), running.end(), runsElsewhere)) {
        changed.Wait(mutex);
    }
}

} // namespace skeleton
