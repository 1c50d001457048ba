// invalidations.h - registered invalidation callbacks and the thread that calls them
#pragma once

#include "platform/mutex.h"
#include "platform/thread.h"
#include "pxnc.h"
#include "pxnc/skeleton/condition.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <thread>
#include <vector>

namespace skeleton {

/// Keeps the registrations and calls them on the event thread, in the order in which the changes
/// were posted and without any lock held, so that a callback may call every function of the SDK.
///
/// Posting never blocks and never calls back, so it is allowed with any lock held. Names are texts
/// of the pool: equal names are equal pointers.
class Invalidations {
public:
    /// One registration, as Register took it.
    struct Registration {
        std::uint64_t id;                 ///< unique in this object
        PxnHandle handle;                 ///< the module
        const char* name;                 ///< the feature
        PxnInvalidationCallback callback; ///< what is called
        void* context;                    ///< and with what
    };

    /// How often registrations were added and removed since the object was made.
    struct Counts {
        std::atomic<std::uint64_t> registered = 0;          ///< added
        std::atomic<std::uint64_t> unregistered = 0;        ///< removed one by one
        std::atomic<std::uint64_t> unregisteredByClose = 0; ///< removed with their handle
    };

    Invalidations() = default;
    ~Invalidations();
    Invalidations(const Invalidations&) = delete;
    Invalidations& operator=(const Invalidations&) = delete;

    /// Starts the event thread; false when the system refused.
    bool Start();
    /// Drops what is still posted, waits for a running callback and ends the thread.
    void Stop() EXCLUDES(mutex);

    /// Adds a registration; it is called for what is posted from now on.
    void Register(PxnHandle handle, const char* name, PxnInvalidationCallback callback,
                  void* context) EXCLUDES(mutex);
    /// Removes the newest registration of the three and waits while another thread calls it. False
    /// when there is none.
    bool Unregister(PxnHandle handle, const char* name, PxnInvalidationCallback callback)
        EXCLUDES(mutex);
    /// Removes all registrations of a handle that goes away, and waits in the same way.
    void UnregisterAll(PxnHandle handle) EXCLUDES(mutex);
    /// All registrations, in their order.
    std::vector<Registration> List() const EXCLUDES(mutex);
    /// The counts, which change at any time.
    const Counts& GetCounts() const { return counts; }

    /// The feature has changed.
    void Post(PxnHandle handle, const char* name) EXCLUDES(mutex);
    /// Runs on the event thread and returns the names of the features that have changed.
    using Work = std::function<std::vector<const char*>()>;
    /// Runs `work` on the event thread without a lock, then calls the registrations of the features
    /// that it returns: for features that take on the values of an event right before its
    /// callbacks, and for changes that have to be searched for.
    void PostWork(PxnHandle handle, Work work) EXCLUDES(mutex);
    /// Calls the registrations of a feature on the calling thread. Returns how many were called.
    unsigned Call(PxnHandle handle, const char* name) EXCLUDES(mutex);

    /// Waits until everything posted before has been delivered. Does nothing inside a callback.
    void Drain() EXCLUDES(mutex);
    /// As Drain, for a second at most: callbacks that wait for the caller delay it no longer.
    void DrainPatiently() EXCLUDES(mutex);

private:
    struct Posted {
        PxnHandle handle;
        const char* name; // null: `work` returns the names
        Work work;
    };
    struct Running {
        std::uint64_t id;
        std::thread::id thread;
    };

    void DrainUntil(std::optional<Clock::time_point> end) EXCLUDES(mutex);
    void Push(Posted posted) REQUIRES(mutex);
    static void ThreadProcedure(void* self);
    void Run() EXCLUDES(mutex);
    void Deliver(const Posted& event) EXCLUDES(mutex);
    void CallOne(const Registration& one) REQUIRES(mutex);
    void WaitWhileRunning(std::uint64_t id) REQUIRES(mutex);

    platform::Thread thread; // set by Start, joined by Stop
    Counts counts;
    mutable platform::Mutex mutex;
    Condition changed;
    std::vector<Registration> registrations GUARDED_BY(mutex);
    std::vector<Running> running GUARDED_BY(mutex);
    std::deque<Posted> posted GUARDED_BY(mutex);
    std::uint64_t lastId GUARDED_BY(mutex) = 0;
    std::uint64_t postedCount GUARDED_BY(mutex) = 0;
    std::uint64_t deliveredCount GUARDED_BY(mutex) = 0;
    bool isEnding GUARDED_BY(mutex) = false;
};

} // namespace skeleton
