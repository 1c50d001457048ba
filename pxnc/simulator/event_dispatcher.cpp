#include "pxnc/simulator/event_dispatcher.h"

#include "pxnc/simulator/callback_scope.h"

#include <algorithm>

namespace pxsim {

EventDispatcher::~EventDispatcher() {
    Stop();
}

bool EventDispatcher::Start() {
    thread = platform::Thread::Start(&EventDispatcher::ThreadProcedure, this, 0);
    return thread.IsJoinable();
}

void EventDispatcher::Stop() {
    {
        platform::MutexLock lock(mutex);
        ending = true;
        posted.clear();
        changed.NotifyAll();
    }
    thread.Join();
}

void EventDispatcher::Register(PxnHandle handle, const char* name, PxnInvalidationCallback callback,
                               void* context) {
    platform::MutexLock lock(mutex);
    registrations.push_back({++lastId, handle, name, callback, context});
}

bool EventDispatcher::Unregister(PxnHandle handle, const char* name,
                                 PxnInvalidationCallback callback) {
    platform::MutexLock lock(mutex);
    auto newest = std::find_if(registrations.rbegin(), registrations.rend(),
                               [&](const Registration& candidate) {
                                   return candidate.handle == handle && candidate.name == name &&
                                          candidate.callback == callback;
                               });
    if (newest == registrations.rend()) {
        return false;
    }
    const std::uint64_t id = newest->id;
    registrations.erase(std::next(newest).base());
    WaitWhileRunning(id);
    return true;
}

std::size_t EventDispatcher::UnregisterAll(PxnHandle handle) {
    platform::MutexLock lock(mutex);
    std::vector<std::uint64_t> ids;
    for (const Registration& registration : registrations) {
        if (registration.handle == handle) {
            ids.push_back(registration.id);
        }
    }
    std::erase_if(registrations, [handle](const Registration& registration) {
        return registration.handle == handle;
    });
    for (const std::uint64_t id : ids) {
        WaitWhileRunning(id);
    }
    return ids.size();
}

std::size_t EventDispatcher::RegistrationCount() const {
    platform::MutexLock lock(mutex);
    return registrations.size();
}

void EventDispatcher::PostInvalidation(PxnHandle handle, const char* name) {
    platform::MutexLock lock(mutex);
    if (HasRegistration(handle, name)) {
        posted.push_back({handle, name, nullptr});
        ++postedCount;
        changed.NotifyAll();
    }
}

void EventDispatcher::PostEvent(PxnHandle handle, const char* name, std::function<void()> prepare) {
    platform::MutexLock lock(mutex);
    posted.push_back({handle, name, std::move(prepare)});
    ++postedCount;
    changed.NotifyAll();
}

void EventDispatcher::Drain() {
    DrainUntil(std::nullopt);
}

void EventDispatcher::DrainPatiently() {
    DrainUntil(Clock::now() + std::chrono::seconds(1));
}

void EventDispatcher::DrainUntil(std::optional<Clock::time_point> end) {
    if (IsEventThread()) {
        return;
    }
    platform::MutexLock lock(mutex);
    const std::uint64_t target = postedCount;
    while (deliveredCount < target && !ending) {
        if (!end) {
            changed.Wait(mutex);
        } else if (Clock::now() < *end) {
            changed.WaitUntil(mutex, *end);
        } else {
            return;
        }
    }
}

void EventDispatcher::ThreadProcedure(void* self) {
    static_cast<EventDispatcher*>(self)->Run();
}

void EventDispatcher::Run() {
    platform::MutexLock lock(mutex);
    while (!ending) {
        if (posted.empty()) {
            changed.Wait(mutex);
            continue;
        }
        const Event event = std::move(posted.front());
        posted.pop_front();
        Deliver(event);
        ++deliveredCount;
        changed.NotifyAll();
    }
}

void EventDispatcher::Deliver(const Event& event) {
    if (event.prepare) {
        mutex.Unlock();
        event.prepare();
        mutex.Lock();
    }
    std::vector<Registration> called;
    for (const Registration& registration : registrations) {
        if (registration.handle == event.handle && registration.name == event.name) {
            called.push_back(registration);
        }
    }
    for (const Registration& one : called) {
        // An earlier callback of this event may have removed it.
        const bool present =
            std::any_of(registrations.begin(), registrations.end(),
                        [&](const Registration& candidate) { return candidate.id == one.id; });
        if (!present || ending) {
            continue;
        }
        runningId = one.id;
        mutex.Unlock();
        {
            CallbackScope scope(CallbackKind::kInvalidation);
            one.callback(one.handle, one.name, one.context);
        }
        mutex.Lock();
        runningId = 0;
        changed.NotifyAll();
    }
}

void EventDispatcher::WaitWhileRunning(std::uint64_t id) {
    if (IsEventThread()) {
        return;
    }
    while (runningId == id) {
        changed.Wait(mutex);
    }
}

bool EventDispatcher::HasRegistration(PxnHandle handle, const char* name) const {
    return std::any_of(registrations.begin(), registrations.end(),
                       [&](const Registration& registration) {
                           return registration.handle == handle && registration.name == name;
                       });
}

} // namespace pxsim
