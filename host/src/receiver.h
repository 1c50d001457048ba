// receiver.h - receivers of an event and their removal
#pragma once

#include "mivora/types.h"
#include "platform/event.h"
#include "platform/mutex.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <new>

/// Marks the calling thread as delivering an event to a receiver.
class DeliveryScope {
public:
    DeliveryScope();
    ~DeliveryScope();
    DeliveryScope(const DeliveryScope&) = delete;
    DeliveryScope& operator=(const DeliveryScope&) = delete;

    /// True if the calling thread is inside a receiver of any event.
    static bool IsInside();
};

/// The receiver of an event: a callback with its context, or an object.
///
/// Deliver calls the receiver without holding a lock. Install and Remove wait until all deliveries
/// to the previous receiver have ended on other threads, so that the caller may then destroy it. A
/// thread that is itself inside a receiver does not wait: two receivers that remove each other
/// would deadlock. Any thread.
template <typename Target>
class Receiver {
public:
    /// Throws std::bad_alloc without any change when out of memory or system objects.
    void Install(const Target& target) {
        auto entry = std::make_shared<Entry>(target);
        if (!entry->ended.IsValid()) {
            throw std::bad_alloc();
        }
        Exchange(std::move(entry));
    }

    void Remove() { Exchange(nullptr); }

    /// Calls `call` with the receiver; false if there is none.
    template <typename Call>
    bool Deliver(const Call& call) {
        if (!isInstalled.load(std::memory_order_acquire)) {
            return false;
        }
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
        unsigned running = 0;  // number of deliveries; guarded by the owner's mutex
        platform::Event ended; // set after the last delivery once replaced
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
            isInstalled.store(entry != nullptr, std::memory_order_release);
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
    std::atomic<bool> isInstalled{false}; // without a receiver no lock is taken; under the mutex
};

/// A window and a thread that are notified by posted messages; posting does not block. Any thread.
class MessageReceivers {
public:
    /// A null window, thread 0 or message 0 removes the receiver. MV_NOT_AVAILABLE on platforms
    /// without window messages.
    MV_ERRCODE SetWindow(MV_WINDOW receiver, std::uint32_t message);
    MV_ERRCODE SetThread(std::uint32_t receiver, std::uint32_t message);
    /// Posts to the window and the thread, as far as they are set.
    void Post(std::uint64_t wParam, std::int64_t lParam);

private:
    void NoteReceivers() REQUIRES(mutex);

    platform::Mutex mutex;
    std::atomic<bool> isAnySet{false}; // without a receiver no lock is taken; under the mutex
    MV_WINDOW window GUARDED_BY(mutex) = nullptr;
    std::uint32_t windowMessage GUARDED_BY(mutex) = 0;
    std::uint32_t threadId GUARDED_BY(mutex) = 0;
    std::uint32_t threadMessage GUARDED_BY(mutex) = 0;
};

/// A callback function and its context.
template <typename Function>
struct Callback {
    Function function;
    void* context;
};

/// All receivers of an event: callback, window and thread.
template <typename Function>
struct EventReceivers {
    Receiver<Callback<Function>> callback;
    MessageReceivers messages;

    /// Null removes the callback. MV_REFUSED when out of memory.
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
