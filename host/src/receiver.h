// receiver.h - who is told of an event, and how the telling ends
#pragma once

#include "mivora/types.h"
#include "platform/event.h"
#include "platform/mutex.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <new>

/// Marks the calling thread as one that is handing an event to a receiver.
class DeliveryScope {
public:
    DeliveryScope();
    ~DeliveryScope();
    DeliveryScope(const DeliveryScope&) = delete;
    DeliveryScope& operator=(const DeliveryScope&) = delete;

    /// True on a thread that is inside a receiver of whatever event.
    static bool IsInside();
};

/// One receiver of an event: a callback with its context, or an object.
///
/// Delivery calls it without holding a lock. Replacing or removing it waits until the deliveries
/// to the old one have ended on the other threads, so that what it points to may go away then. A
/// thread that is inside a receiver itself does not wait: two receivers that remove each other
/// would wait for ever. Any thread.
template <typename Target>
class Receiver {
public:
    void Install(const Target& target) {
        auto entry = std::make_shared<Entry>(target);
        if (!entry->ended.IsValid()) {
            throw std::bad_alloc();
        }
        Exchange(std::move(entry));
    }

    void Remove() { Exchange(nullptr); }

    /// Runs `call` with the receiver; false when there is none.
    template <typename Call>
    bool Deliver(const Call& call) {
        const std::shared_ptr<Entry> entry = Enter();
        if (!entry) {
            return false;
        }
        const Leaving leaving(*this, *entry);
        const DeliveryScope scope;
        call(entry->target);
        return true;
    }

private:
    struct Entry {
        explicit Entry(const Target& receiver) : target(receiver) {}

        const Target target;
        unsigned running = 0;  // deliveries under way; guarded by the owner's mutex
        platform::Event ended; // set when the last delivery to a replaced receiver has ended
    };

    class Leaving {
    public:
        Leaving(Receiver& receiver, Entry& delivered) : owner(receiver), entry(delivered) {}
        ~Leaving() { owner.Leave(entry); }
        Leaving(const Leaving&) = delete;
        Leaving& operator=(const Leaving&) = delete;

    private:
        Receiver& owner;
        Entry& entry;
    };

    std::shared_ptr<Entry> Enter() {
        const platform::MutexLock lock(mutex);
        if (current) {
            ++current->running;
        }
        return current;
    }

    void Leave(Entry& entry) {
        const platform::MutexLock lock(mutex);
        if (--entry.running == 0 && current.get() != &entry) {
            entry.ended.Set();
        }
    }

    void Exchange(std::shared_ptr<Entry> entry) {
        {
            const platform::MutexLock lock(mutex);
            current.swap(entry);
            if (!entry || entry->running == 0) {
                return;
            }
        }
        if (!DeliveryScope::IsInside()) {
            entry->ended.Wait(platform::kInfinite);
        }
    }

    platform::Mutex mutex;
    std::shared_ptr<Entry> current GUARDED_BY(mutex);
};

/// A window or a thread that is told by a message of the system; posting never waits.
class MessageReceivers {
public:
    /// A null window, thread 0 or message 0 removes the receiver. MV_NOT_AVAILABLE where the
    /// platform has no messages.
    MV_ERRCODE SetWindow(MV_WINDOW receiver, std::uint32_t message);
    MV_ERRCODE SetThread(std::uint32_t receiver, std::uint32_t message);
    /// Posts to both, those that there are.
    void Post(std::uint64_t wParam, std::int64_t lParam);

private:
    platform::Mutex mutex;
    MV_WINDOW window GUARDED_BY(mutex) = nullptr;
    std::uint32_t windowMessage GUARDED_BY(mutex) = 0;
    std::uint32_t threadId GUARDED_BY(mutex) = 0;
    std::uint32_t threadMessage GUARDED_BY(mutex) = 0;
};

/// A callback with what it is called with.
template <typename Function>
struct Callback {
    Function function;
    void* context;
};

/// The three kinds of receivers of one event.
template <typename Function>
struct EventReceivers {
    Receiver<Callback<Function>> callback;
    MessageReceivers messages;

    /// Null removes the callback.
    MV_ERRCODE SetCallback(Function function, void* context) {
        try {
            if (function) {
                callback.Install({function, context});
            } else {
                callback.Remove();
            }
        } catch (const std::bad_alloc&) {
            return MV_REFUSED;
        }
        return MV_OK;
    }
};
