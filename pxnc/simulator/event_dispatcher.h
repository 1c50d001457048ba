// event_dispatcher.h - invalidation callbacks, on a thread of their own
#pragma once

#include "platform/mutex.h"
#include "platform/thread.h"
#include "pxnc.h"
#include "pxnc/simulator/condition.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

namespace pxsim {

/// Keeps the registrations and calls them on the event thread, in the order in which the changes
/// were posted and without any lock held, so that a callback may use every entry point.
///
/// Posting never blocks and never calls back, so it is allowed with any lock held.
class EventDispatcher {
public:
    EventDispatcher() = default;
    ~EventDispatcher();
    EventDispatcher(const EventDispatcher&) = delete;
    EventDispatcher& operator=(const EventDispatcher&) = delete;

    /// Starts the event thread; false when the system refused.
    bool Start();
    /// Drops what is still posted, waits for a running callback and ends the thread.
    void Stop() EXCLUDES(mutex);

    /// `name` is a shared text of the string pool.
    void Register(PxnHandle handle, const char* name, PxnInvalidationCallback callback,
                  void* context) EXCLUDES(mutex);
    /// Removes the newest registration of the three and waits while it is being called, except
    /// on the event thread itself. False when there is none.
    bool Unregister(PxnHandle handle, const char* name, PxnInvalidationCallback callback)
        EXCLUDES(mutex);
    /// Removes all registrations of a handle that goes away, waiting in the same way. Returns
    /// how many there were.
    std::size_t UnregisterAll(PxnHandle handle) EXCLUDES(mutex);
    std::size_t RegistrationCount() const EXCLUDES(mutex);

    void PostInvalidation(PxnHandle handle, const char* name) EXCLUDES(mutex);
    /// Runs `prepare` on the event thread right before the callbacks of the feature, so that
    /// they find the values that belong to their event.
    void PostEvent(PxnHandle handle, const char* name, std::function<void()> prepare)
        EXCLUDES(mutex);
    /// Waits until everything posted before has been delivered. Does nothing on the event thread.
    void Drain() EXCLUDES(mutex);
    /// The same, but for a second at most: callbacks that wait for the caller hold it no longer.
    void DrainPatiently() EXCLUDES(mutex);
    bool IsEventThread() const { return thread.IsCurrent(); }

private:
    struct Registration {
        std::uint64_t id;
        PxnHandle handle;
        const char* name;
        PxnInvalidationCallback callback;
        void* context;
    };
    struct Event {
        PxnHandle handle;
        const char* name;
        std::function<void()> prepare;
    };

    void DrainUntil(std::optional<Clock::time_point> end) EXCLUDES(mutex);
    static void ThreadProcedure(void* self);
    void Run() EXCLUDES(mutex);
    void Deliver(const Event& event) REQUIRES(mutex);
    void WaitWhileRunning(std::uint64_t id) REQUIRES(mutex);
    bool HasRegistration(PxnHandle handle, const char* name) const REQUIRES(mutex);

    platform::Thread thread; // set by Start, joined by Stop
    mutable platform::Mutex mutex;
    Condition changed;
    std::vector<Registration> registrations GUARDED_BY(mutex);
    std::deque<Event> posted GUARDED_BY(mutex);
    std::uint64_t lastId GUARDED_BY(mutex) = 0;
    std::uint64_t runningId GUARDED_BY(mutex) = 0; // the registration being called, or 0
    std::uint64_t postedCount GUARDED_BY(mutex) = 0;
    std::uint64_t deliveredCount GUARDED_BY(mutex) = 0;
    bool ending GUARDED_BY(mutex) = false;
};

} // namespace pxsim
