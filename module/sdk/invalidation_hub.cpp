// invalidation_hub.cpp - shares one camera SDK's invalidation callbacks among all who follow it
#include "sdk/invalidation_hub.h"

#include "platform/event.h"
#include "platform/static_mutex.h"
#include "sdk/callback_scope.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>
#include <optional>
#include <thread>

namespace pyxen {

namespace {

/// Guards every hub and what belongs to it. Held for a moment at a time: neither the SDK nor a
/// receiver is called meanwhile, and no receiver is destroyed. Without a destructor, since threads
/// of the SDK may call back while the process ends.
constinit platform::StaticMutex hubGate;

InvalidationHub* firstHub GUARDED_BY(hubGate) = nullptr;
std::uintptr_t lastContext GUARDED_BY(hubGate) = 0; // none is used a second time
std::uint64_t lastSubscriber GUARDED_BY(hubGate) = 0;

/// What the hub calls of the SDK.
struct HubEntries {
    decltype(&PxnFeatureInvalidationRegister) add = nullptr;
    decltype(&PxnFeatureInvalidationUnregister) takeBack = nullptr;
};

} // namespace

struct Invalidation::Subscriber {
    Subscriber(InvalidationHub::Receiver receiver, InvalidationEnding ending)
        : receive(std::move(receiver)) {
        if (ending == InvalidationEnding::kWaits && !callEnded.emplace().IsValid()) {
            throw std::bad_alloc();
        }
    }

    const InvalidationHub::Receiver receive;
    std::uint64_t number = 0; // later ones are higher; constant once it has joined
    std::atomic<bool> subscribed{true};
    std::optional<platform::Event> callEnded; // none where nobody waits
};

bool Invalidation::IsWanted() const {
    return subscriber.subscribed;
}

/// A call by the SDK, on the stack of its thread.
struct InvalidationHub::RunningCall {
    const std::thread::id thread = std::this_thread::get_id();
    std::shared_ptr<Invalidation::Subscriber> subscriber; // whose receiver runs
    RunningCall* next = nullptr;
};

namespace {

/// A thread that ends a subscription, on its stack.
struct WaitingThread {
    platform::Event& changed;
    WaitingThread* next;
};

} // namespace

/// What the SDK is to call, and for whom.
struct InvalidationHub::Registration {
    using SubscriberPointer = std::shared_ptr<Invalidation::Subscriber>;

    Registration(InvalidationHub& owner, InvalidationChannel newChannel, PxnHandle module,
                 const std::string& feature)
        : channel(newChannel), handle(module), name(feature), hub(&owner) {}

    /// Calls the SDK until it has what the subscribers need.
    void Settle(const HubEntries& sdk) EXCLUDES(hubGate);
    void Remove(const SubscriberPointer& subscriber) EXCLUDES(hubGate) {
        const platform::StaticMutexLock lock(hubGate);
        Drop(subscriber);
    }
    /// Waits while another thread is inside the subscriber's receiver, and while a call that has
    /// left all receivers takes the registration back: the SDK may be shut down afterwards.
    void WaitForCalls(Invalidation::Subscriber& subscriber) EXCLUDES(hubGate);
    /// Begins a call; returns the number of the newest subscriber that it is for.
    std::uint64_t Enter(RunningCall& call) EXCLUDES(hubGate);
    /// Turns from the subscriber that was called to the next one up to `last`; false at the end.
    bool Advance(RunningCall& call, std::uint64_t last) EXCLUDES(hubGate);
    /// Ends a call, and takes the registration back if that was left to it.
    void Leave(RunningCall& call) EXCLUDES(hubGate);

    const InvalidationChannel channel;
    const PxnHandle handle;
    const std::string name;

    InvalidationHub* hub GUARDED_BY(hubGate);       // null once the SDK has dropped or may drop it
    std::uintptr_t context GUARDED_BY(hubGate) = 0; // of what the SDK has, 0 when it has nothing
    std::vector<SubscriberPointer> subscribers GUARDED_BY(hubGate); // by number

private:
    bool Step(const HubEntries& sdk) EXCLUDES(hubGate);
    void Drop(const SubscriberPointer& subscriber) REQUIRES(hubGate);
    /// Whether another thread is inside a call, of that subscriber when one is given.
    bool RunsElsewhere(const Invalidation::Subscriber* subscriber) const REQUIRES(hubGate);
    /// Whether a call on another thread has left all receivers, of which none is left.
    bool IsBeingLeft() const REQUIRES(hubGate);
    void WakeWaiting() REQUIRES(hubGate);

    WaitingThread* waiting GUARDED_BY(hubGate) = nullptr;
    unsigned leaving GUARDED_BY(hubGate) = 0;    // calls that take the registration back
    bool isSettling GUARDED_BY(hubGate) = false; // by the one thread that calls the SDK
    RunningCall* calls GUARDED_BY(hubGate) = nullptr;
    HubEntries entries GUARDED_BY(hubGate); // good inside a call
};

// ---- what the SDK has ----

void InvalidationHub::Registration::Settle(const HubEntries& sdk) {
    {
        const platform::StaticMutexLock lock(hubGate);
        if (isSettling) {
            return; // that thread sees what has changed
        }
        isSettling = true;
    }
    while (Step(sdk)) {
    }
}

bool InvalidationHub::Registration::Step(const HubEntries& sdk) {
    SubscriberPointer asking;
    std::shared_ptr<Registration> self; // destroyed without the lock
    std::uintptr_t wanted = 0;
    {
        const platform::StaticMutexLock lock(hubGate);
        const bool isNeeded = !subscribers.empty();
        // The SDK would wait for a call on another thread, which takes it back at its end instead.
        const bool isLeft = !isNeeded && RunsElsewhere(nullptr);
        if (!hub || isNeeded == (context != 0) || isLeft) {
            isSettling = false;
            if (hub && !isNeeded && !context) {
                auto& all = hub->registrations;
                const auto place = std::find_if(
                    all.begin(), all.end(), [this](const auto& one) { return one.get() == this; });
                if (place != all.end()) {
                    self = std::move(*place);
                    all.erase(place);
                }
                hub = nullptr;
            }
            return false;
        }
        if (isNeeded) {
            asking = subscribers.front();
            wanted = ++lastContext;
            entries = sdk;
        }
        context = wanted;
    }
    if (!asking) {
        sdk.takeBack(handle, name.c_str(), CallbackOf(channel));
    } else if (sdk.add(handle, name.c_str(), CallbackOf(channel),
                       reinterpret_cast<void*>(wanted)) != PxnErrSuccess) {
        const platform::StaticMutexLock lock(hubGate);
        Drop(asking);
        context = 0;
    }
    return true;
}

void InvalidationHub::Registration::Drop(const SubscriberPointer& subscriber) {
    subscriber->subscribed = false;
    std::erase(subscribers, subscriber);
}

bool InvalidationHub::Registration::RunsElsewhere(
    const Invalidation::Subscriber* subscriber) const {
    for (const RunningCall* call = calls; call; call = call->next) {
        if (call->thread != std::this_thread::get_id() &&
            (!subscriber || call->subscriber.get() == subscriber)) {
            return true;
        }
    }
    return false;
}

bool InvalidationHub::Registration::IsBeingLeft() const {
    if (!subscribers.empty()) {
        return false;
    }
    for (const RunningCall* call = calls; call; call = call->next) {
        if (call->thread != std::this_thread::get_id() && !call->subscriber) {
            return true;
        }
    }
    return leaving != 0;
}

void InvalidationHub::Registration::WakeWaiting() {
    for (const WaitingThread* thread = waiting; thread; thread = thread->next) {
        thread->changed.Set();
    }
}

// ---- calls ----

std::uint64_t InvalidationHub::Registration::Enter(RunningCall& call) {
    const platform::StaticMutexLock lock(hubGate);
    call.next = std::exchange(calls, &call);
    return lastSubscriber;
}

bool InvalidationHub::Registration::Advance(RunningCall& call, std::uint64_t last) {
    SubscriberPointer done; // destroyed without the lock
    const platform::StaticMutexLock lock(hubGate);
    done = std::move(call.subscriber);
    call.subscriber.reset();
    WakeWaiting();
    for (const SubscriberPointer& candidate : subscribers) {
        if ((!done || candidate->number > done->number) && candidate->number <= last) {
            call.subscriber = candidate;
            return true;
        }
    }
    return false;
}

void InvalidationHub::Registration::Leave(RunningCall& call) {
    HubEntries sdk;
    {
        const platform::StaticMutexLock lock(hubGate);
        RunningCall** link = &calls;
        while (*link != &call) {
            link = &(*link)->next;
        }
        *link = call.next;
        WakeWaiting();
        if (!hub || !context || !subscribers.empty()) {
            return;
        }
        sdk = entries;
        ++leaving;
    }
    Settle(sdk);
    const platform::StaticMutexLock lock(hubGate);
    --leaving;
    WakeWaiting();
}

void InvalidationHub::Registration::WaitForCalls(Invalidation::Subscriber& subscriber) {
    if (!subscriber.callEnded) {
        return;
    }
    const platform::StaticMutexLock lock(hubGate);
    WaitingThread own{*subscriber.callEnded, waiting};
    waiting = &own;
    while (RunsElsewhere(&subscriber) || IsBeingLeft()) {
        own.changed.Reset();
        hubGate.Unlock();
        own.changed.Wait(platform::kInfinite);
        hubGate.Lock();
    }
    WaitingThread** link = &waiting;
    while (*link != &own) {
        link = &(*link)->next;
    }
    *link = own.next;
}

void InvalidationHub::Deliver(Registration& registration, PxnHandle handle, const char* name) {
    RunningCall call;
    const std::uint64_t last = registration.Enter(call);
    while (registration.Advance(call, last)) {
        NoThrow(false, [&] {
            call.subscriber->receive(Invalidation(handle, name, *call.subscriber));
            return true;
        });
    }
    registration.Leave(call);
}

// Each channel needs a function of its own, as the SDK tells registrations apart by it.
template <InvalidationChannel kChannel>
void PXN_CALL InvalidationHub::OnInvalidation(PxnHandle handle, const char* name, void* context) {
    const EventScope scope;
    NoThrow(false, [&] {
        const std::shared_ptr<Registration> registration = Find(kChannel, context);
        if (registration) {
            Deliver(*registration, handle, name);
        }
        return true;
    });
}

PxnInvalidationCallback InvalidationHub::CallbackOf(InvalidationChannel channel) {
    switch (channel) {
    case InvalidationChannel::kFeatureValue:
        return OnInvalidation<InvalidationChannel::kFeatureValue>;
    case InvalidationChannel::kSyncFeature:
        return OnInvalidation<InvalidationChannel::kSyncFeature>;
    case InvalidationChannel::kBufferFormat:
        return OnInvalidation<InvalidationChannel::kBufferFormat>;
    case InvalidationChannel::kTiming:
        return OnInvalidation<InvalidationChannel::kTiming>;
    case InvalidationChannel::kGrabberDiscovery:
        return OnInvalidation<InvalidationChannel::kGrabberDiscovery>;
    case InvalidationChannel::kService:
        return OnInvalidation<InvalidationChannel::kService>;
    case InvalidationChannel::kFinderDiscovery:
        break;
    }
    return OnInvalidation<InvalidationChannel::kFinderDiscovery>;
}

// ---- hubs ----

InvalidationHub::InvalidationHub(void* loaded) : library(loaded) {}

std::shared_ptr<InvalidationHub> InvalidationHub::Of(void* library) {
    // Made, and destroyed when it is not needed, without the lock.
    std::shared_ptr<InvalidationHub> made(new InvalidationHub(library));
    const platform::StaticMutexLock lock(hubGate);
    for (InvalidationHub* hub = firstHub; hub; hub = hub->next) {
        // One that is about to be destroyed waits for the lock.
        if (auto known = hub->library == library ? hub->weak_from_this().lock() : nullptr) {
            return known;
        }
    }
    made->next = std::exchange(firstHub, made.get());
    return made;
}

InvalidationHub::~InvalidationHub() {
    const platform::StaticMutexLock lock(hubGate);
    InvalidationHub** link = &firstHub;
    while (*link && *link != this) {
        link = &(*link)->next;
    }
    if (*link) {
        *link = next;
    }
    for (const auto& registration : registrations) {
        registration->hub = nullptr;
    }
}

void InvalidationHub::Forget(PxnHandle handle) {
    for (;;) {
        std::shared_ptr<Registration> forgotten; // destroyed without the lock
        const platform::StaticMutexLock lock(hubGate);
        const auto place = std::find_if(
            registrations.begin(), registrations.end(),
            [handle](const auto& registration) { return registration->handle == handle; });
        if (place == registrations.end()) {
            return;
        }
        forgotten = std::move(*place);
        registrations.erase(place);
        forgotten->hub = nullptr;
    }
}

std::shared_ptr<InvalidationHub::Registration> InvalidationHub::Find(InvalidationChannel channel,
                                                                     const void* context) {
    const platform::StaticMutexLock lock(hubGate);
    for (const InvalidationHub* hub = firstHub; hub; hub = hub->next) {
        for (const auto& registration : hub->registrations) {
            if (registration->channel == channel && context &&
                registration->context == reinterpret_cast<std::uintptr_t>(context)) {
                return registration;
            }
        }
    }
    return nullptr;
}

// ---- subscribing ----

struct InvalidationSubscription::Place {
    CPyxenAPIAccess& api;
    std::shared_ptr<Invalidation::Subscriber> subscriber;
    std::shared_ptr<InvalidationHub::Registration> registration;
    bool waits = true;

    void WaitForCalls() const {
        if (waits) {
            registration->WaitForCalls(*subscriber);
        }
    }
};

namespace {

HubEntries EntriesOf(const CPyxenAPIAccess& api) {
    return {api.PxnFeatureInvalidationRegister, api.PxnFeatureInvalidationUnregister};
}

} // namespace

std::shared_ptr<InvalidationHub::Registration>
InvalidationHub::Join(InvalidationChannel channel, PxnHandle handle, const std::string& name,
                      const std::shared_ptr<Invalidation::Subscriber>& subscriber) {
    const platform::StaticMutexLock lock(hubGate);
    subscriber->number = ++lastSubscriber;
    for (const auto& known : registrations) {
        if (known->channel == channel && known->handle == handle && known->name == name) {
            known->subscribers.push_back(subscriber);
            return known;
        }
    }
    auto made = std::make_shared<Registration>(*this, channel, handle, name);
    made->subscribers.push_back(subscriber);
    registrations.push_back(made);
    return made;
}

InvalidationSubscription InvalidationHub::Subscribe(CPyxenAPIAccess& api,
                                                    InvalidationChannel channel, PxnHandle handle,
                                                    const std::string& name,
                                                    InvalidationEnding ending, Receiver receiver) {
    const std::shared_ptr<InvalidationHub> hub = api.Invalidations();
    if (!hub) {
        return {};
    }
    const auto subscriber = std::make_shared<Invalidation::Subscriber>(std::move(receiver), ending);
    const std::shared_ptr<InvalidationSubscription::Place> place(
        new InvalidationSubscription::Place{api, subscriber, nullptr, true});
    place->registration = hub->Join(channel, handle, name, subscriber);
    place->registration->Settle(EntriesOf(api));
    return subscriber->subscribed ? InvalidationSubscription(place) : InvalidationSubscription();
}

InvalidationSubscription&
InvalidationSubscription::operator=(InvalidationSubscription&& other) noexcept {
    if (this != &other) {
        Unsubscribe();
        place = std::move(other.place);
    }
    return *this;
}

void InvalidationSubscription::EndCalls(InvalidationEnding ending) {
    if (place) {
        place->registration->Remove(place->subscriber);
        place->waits = ending == InvalidationEnding::kWaits;
        place->WaitForCalls();
    }
}

void InvalidationSubscription::Unsubscribe() {
    const std::shared_ptr<Place> left = std::exchange(place, nullptr);
    if (!left) {
        return;
    }
    left->registration->Remove(left->subscriber);
    left->WaitForCalls();
    if (left->api.IsValid()) {
        left->registration->Settle(EntriesOf(left->api));
        left->WaitForCalls(); // one may do it instead
    }
}

} // namespace pyxen
