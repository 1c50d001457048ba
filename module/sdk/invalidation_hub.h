// invalidation_hub.h - shares one camera SDK's invalidation callbacks among all who follow it
#pragma once

#include "pxnc.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class CPyxenAPIAccess;

namespace pyxen {

/// What a registration is for. Each has registrations of its own with the SDK.
enum class InvalidationChannel {
    kFeatureValue,     ///< feature control dialogs: values on screen
    kSyncFeature,      ///< feature control dialogs: sources of synchronisation
    kBufferFormat,     ///< feature control dialogs: the layout of the frame buffers
    kTiming,           ///< feature control dialogs: exposure and frame rate
    kGrabberDiscovery, ///< grabbers: cameras that appear and disappear
    kFinderDiscovery,  ///< device finders: cameras and interfaces that appear and disappear
    kService,          ///< services: what hosts have subscribed to
};

/// What ending a subscription does about a call that runs on another thread.
enum class InvalidationEnding {
    kWaits,  ///< returns when the call has
    kAtOnce, ///< for window threads, to which the call may be sending a message: see IsWanted
};

/// One call of a receiver, on a thread of the SDK.
class Invalidation {
public:
    PxnHandle handle;
    const char* name; ///< the SDK's own text, which it keeps until its last shutdown; may be null

    /// False once the subscription has ended. A receiver that is subscribed with kAtOnce asks again
    /// after each step that may take long.
    bool IsWanted() const;

private:
    friend class InvalidationHub;
    friend class InvalidationSubscription;
    struct Subscriber;
    Invalidation(PxnHandle module, const char* feature, const Subscriber& receiver)
        : handle(module), name(feature), subscriber(receiver) {}

    const Subscriber& subscriber;
};

/// A place among the subscribers of a feature, or none. Not synchronised: one thread at a time.
class InvalidationSubscription {
public:
    InvalidationSubscription() = default;
    ~InvalidationSubscription() { Unsubscribe(); }
    InvalidationSubscription(InvalidationSubscription&& other) noexcept = default;
    InvalidationSubscription& operator=(InvalidationSubscription&& other) noexcept;

    explicit operator bool() const { return place != nullptr; }
    /// From now on the receiver is not called. A call that is running on another thread is waited
    /// for with kWaits, and with kAtOnce neither here nor by Unsubscribe. Does not call the SDK,
    /// which is left to Unsubscribe.
    void EndCalls(InvalidationEnding ending);
    /// Ends the subscription. From then on the receiver is not called. A call that is running on
    /// another thread is waited for or not, as the subscription was made; one that is running on
    /// this thread never is. The SDK is called only while the access object is valid.
    void Unsubscribe();

private:
    friend class InvalidationHub;
    struct Place;
    explicit InvalidationSubscription(std::shared_ptr<Place> taken) : place(std::move(taken)) {}

    std::shared_ptr<Place> place;
};

/// The registrations of one loaded SDK library, kept alive by the access objects that loaded it.
///
/// The SDK cannot tell the registrations of several users apart when one is taken back: it drops
/// the newest. So there is one registration for each channel, module and feature: the first
/// subscriber brings it, the last one takes it back, in whichever order and on whichever threads
/// they come and go.
///
/// No lock is held while the SDK or a receiver is called. One thread at a time calls the SDK for a
/// registration; others leave to it what they need, so that nobody waits for anybody. A receiver
/// may subscribe and unsubscribe, itself and others. Any thread.
class InvalidationHub : public std::enable_shared_from_this<InvalidationHub> {
public:
    /// Called on the SDK's threads. What it throws is dropped.
    using Receiver = std::function<void(const Invalidation& event)>;

    /// The hub of a loaded library, made when there is none. Throws when out of memory.
    static std::shared_ptr<InvalidationHub> Of(void* library);
    /// Whatever was not taken back is forgotten; callbacks that still come do nothing.
    ~InvalidationHub();
    InvalidationHub(const InvalidationHub&) = delete;
    InvalidationHub& operator=(const InvalidationHub&) = delete;

    /// Has `receiver` called when the feature changes. The result is empty when `api` is not valid
    /// or the SDK refused. Where another thread is just registering the same or taking it back,
    /// that thread calls the SDK for this one as well, a moment later. `api` must outlive the
    /// result. Throws when out of memory.
    static InvalidationSubscription Subscribe(CPyxenAPIAccess& api, InvalidationChannel channel,
                                              PxnHandle handle, const std::string& name,
                                              InvalidationEnding ending, Receiver receiver);

    /// The SDK has dropped all registrations of `handle`, which was closed: they are not taken back
    /// and not taken for those of a module that gets the same handle.
    void Forget(PxnHandle handle);

private:
    friend class InvalidationSubscription;
    struct Registration;
    struct RunningCall;

    explicit InvalidationHub(void* loaded);
    std::shared_ptr<Registration> Join(InvalidationChannel channel, PxnHandle handle,
                                       const std::string& name,
                                       const std::shared_ptr<Invalidation::Subscriber>& subscriber);
    static std::shared_ptr<Registration> Find(InvalidationChannel channel, const void* context);
    static PxnInvalidationCallback CallbackOf(InvalidationChannel channel);
    template <InvalidationChannel kChannel>
    static void PXN_CALL OnInvalidation(PxnHandle handle, const char* name, void* context);
    static void Deliver(Registration& registration, PxnHandle handle, const char* name);

    void* const library;
    // Both under the lock of all hubs, see the source.
    InvalidationHub* next = nullptr;
    std::vector<std::shared_ptr<Registration>> registrations;
};

} // namespace pyxen
