// subscriptions.h - hosts that follow features
#pragma once

#include "mivora/module_services.h"
#include "platform/mutex.h"
#include "sdk/invalidation_hub.h"
#include "services/service_context.h"

#include <cstdint>
#include <list>

namespace pyxen {

/// Who follows which feature by IMivoraModuleServices. Arguments have been checked for null. Any
/// thread.
class Subscriptions {
public:
    explicit Subscriptions(ServiceContext& shared) : context(shared) {}

    /// Throws std::bad_alloc.
    ServiceOutcome Add(const char* module, const char* name, MV_CHANGE_RECEIVER receiver,
                       void* receiverContext, std::uint64_t& number);
    ServiceOutcome End(std::uint64_t number);

    /// Ends those of the open camera's modules, which is about to be closed or replaced, or all of
    /// them. Waits for receivers that run on other threads: the caller holds the service lock, so
    /// that services that these call are refused.
    void EndOfCamera();
    void EndAll();

    /// True when the calling thread is inside a receiver of any grabber's subscriptions.
    static bool IsInsideReceiver();

private:
    struct Entry {
        std::uint64_t number;
        bool isOfSystem;
        InvalidationSubscription place;
    };
    using Entries = std::list<Entry>; // moved from list to list without memory

    template <typename Wanted>
    Entries Take(Wanted wanted);
    /// Has the SDK take back what ended while nothing could wait for the lock. With the lock.
    void TakeBackLeft();

    ServiceContext& context;
    platform::Mutex mutex; // never held while anything else is called
    std::uint64_t lastNumber GUARDED_BY(mutex) = 0;
    Entries entries GUARDED_BY(mutex);
    Entries left GUARDED_BY(mutex); // without calls; the SDK still has them
};

} // namespace pyxen
