// discovery_events.cpp - the SDK's camera discovery events, told to every initialised grabber
#include "grabber/discovery_events.h"

#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/mutex.h"
#include "sdk/no_throw.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr const char* kDiscoveryFeature = "EventCameraDiscovery";

// Whom a registration serves. The mutex is held during the call: whoever ends the service waits
// for a call on another thread, and may end it from inside a call, since the mutex is recursive.
struct Receiver {
    platform::Mutex callMutex;
    CMivoraKVNPyxenClass* grabber GUARDED_BY(callMutex) = nullptr;
    CMivoraKVNPyxenClass* const owner;

    explicit Receiver(CMivoraKVNPyxenClass& newOwner) : grabber(&newOwner), owner(&newOwner) {}
};

// One registration with the SDK, known to it by its address.
struct Registration {
    void* library;
    std::shared_ptr<Receiver> receiver;
};

class Registry {
public:
    // The context to register with the SDK. Throws when memory is out.
    void* Add(CMivoraKVNPyxenClass& grabber) {
        auto receiver = std::make_shared<Receiver>(grabber);
        auto added = std::make_unique<Registration>(
            Registration{grabber.Api().GetLibraryHandle(), std::move(receiver)});
        void* const context = added.get();
        platform::MutexLock lock(mutex);
        registrations.push_back(std::move(added));
        return context;
    }

    // Forgets the grabber's place; the newest of the same library moves there. Null when the
    // grabber has none.
    std::shared_ptr<Receiver> Remove(const CMivoraKVNPyxenClass& grabber) {
        platform::MutexLock lock(mutex);
        const auto place =
            std::find_if(registrations.begin(), registrations.end(), [&](const auto& candidate) {
                return candidate->receiver->owner == &grabber;
            });
        if (place == registrations.end()) {
            return nullptr;
        }
        const auto newest =
            std::find_if(registrations.rbegin(), registrations.rend(), [&](const auto& candidate) {
                return candidate->library == (*place)->library;
            });
        std::shared_ptr<Receiver> removed = std::move((*place)->receiver);
        (*place)->receiver = std::move((*newest)->receiver);
        registrations.erase(std::next(newest).base());
        return removed;
    }

    std::shared_ptr<Receiver> Find(const void* context) const {
        platform::MutexLock lock(mutex);
        for (const auto& registration : registrations) {
            if (registration.get() == context) {
                return registration->receiver;
            }
        }
        return nullptr;
    }

private:
    mutable platform::Mutex mutex; // never held while the SDK or a grabber is called
    std::vector<std::unique_ptr<Registration>> registrations GUARDED_BY(mutex); // oldest first
};

Registry& TheRegistry() {
    static Registry registry;
    return registry;
}

void PXN_CALL OnDiscovery(PxnHandle handle, const char* name, void* context) {
    const std::shared_ptr<Receiver> receiver = TheRegistry().Find(context);
    if (!receiver) {
        return;
    }
    platform::MutexLock lock(receiver->callMutex);
    if (receiver->grabber) {
        receiver->grabber->InvalidationCallback(handle, name);
    }
}

} // namespace

void DiscoveryEvents::Register(CMivoraKVNPyxenClass& grabber) {
    void* const context =
        NoThrow<void*>(nullptr, [&grabber] { return TheRegistry().Add(grabber); });
    if (!context) {
        return;
    }
    const PxnError result = grabber.Api().PxnFeatureInvalidationRegister(
        PXN_SYSTEM_HANDLE, kDiscoveryFeature, OnDiscovery, context);
    if (result != PxnErrSuccess) {
        TheRegistry().Remove(grabber);
    }
}

void DiscoveryEvents::Release(CMivoraKVNPyxenClass& grabber) {
    const auto receiver = NoThrow<std::shared_ptr<Receiver>>(
        nullptr, [&grabber] { return TheRegistry().Remove(grabber); });
    if (!receiver) {
        return;
    }
    grabber.Api().PxnFeatureInvalidationUnregister(PXN_SYSTEM_HANDLE, kDiscoveryFeature,
                                                   OnDiscovery);
    platform::MutexLock lock(receiver->callMutex);
    receiver->grabber = nullptr;
}
