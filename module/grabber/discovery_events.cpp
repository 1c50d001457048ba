// discovery_events.cpp - the SDK's camera discovery events, told to every initialised grabber
#include "grabber/discovery_events.h"

#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/mutex.h"
#include "sdk/no_throw.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

namespace {

constexpr const char* kDiscoveryFeature = "EventCameraDiscovery";

// Who is told. The mutex is held during the call: whoever ends the service waits for a call on
// another thread, and may end it from inside a call, since the mutex is recursive.
struct Receiver {
    platform::Mutex callMutex;
    CMivoraKVNPyxenClass* grabber GUARDED_BY(callMutex) = nullptr;
    CMivoraKVNPyxenClass* const owner;
    void* const library;
    const std::uint64_t number; // later ones are higher

    Receiver(CMivoraKVNPyxenClass& newOwner, std::uint64_t newNumber)
        : grabber(&newOwner),
          owner(&newOwner),
          library(newOwner.Api().GetLibraryHandle()),
          number(newNumber) {}
};

class Registry {
public:
    // Whether the grabber is the only one of its library. Throws when memory is out.
    bool Add(CMivoraKVNPyxenClass& grabber) {
        platform::MutexLock lock(mutex);
        receivers.push_back(std::make_shared<Receiver>(grabber, ++lastNumber));
        return !IsShared(receivers.back()->library);
    }

    struct Removed {
        std::shared_ptr<Receiver> receiver; // null when the grabber has none
        bool wasLast = false;               // of its library
    };
    Removed Remove(const CMivoraKVNPyxenClass& grabber) {
        platform::MutexLock lock(mutex);
        const auto place =
            std::find_if(receivers.begin(), receivers.end(), [&grabber](const auto& candidate) {
                return candidate->owner == &grabber;
            });
        if (place == receivers.end()) {
            return {};
        }
        Removed removed{*place, !IsShared((*place)->library)};
        receivers.erase(place);
        return removed;
    }

    // The library's first receiver with a number above `number`, or null.
    std::shared_ptr<Receiver> FindNext(const void* library, std::uint64_t number) const {
        platform::MutexLock lock(mutex);
        const auto next =
            std::find_if(receivers.begin(), receivers.end(), [&](const auto& candidate) {
                return candidate->library == library && candidate->number > number;
            });
        return next == receivers.end() ? nullptr : *next;
    }

private:
    bool IsShared(const void* library) const REQUIRES(mutex) {
        return std::count_if(receivers.begin(), receivers.end(), [&](const auto& candidate) {
                   return candidate->library == library;
               }) > 1;
    }

    mutable platform::Mutex mutex; // never held while the SDK or a grabber is called
    std::vector<std::shared_ptr<Receiver>> receivers GUARDED_BY(mutex); // by number
    std::uint64_t lastNumber GUARDED_BY(mutex) = 0;
};

Registry& TheRegistry() {
    static Registry registry;
    return registry;
}

// One call is for all: receivers may come and go meanwhile, and none of the others is left out.
void PXN_CALL OnDiscovery(PxnHandle handle, const char* name, void* library) {
    std::uint64_t number = 0;
    while (const auto receiver = TheRegistry().FindNext(library, number)) {
        number = receiver->number;
        platform::MutexLock lock(receiver->callMutex);
        if (receiver->grabber) {
            receiver->grabber->InvalidationCallback(handle, name);
        }
    }
}

} // namespace

void DiscoveryEvents::Register(CMivoraKVNPyxenClass& grabber) {
    CPyxenAPIAccess& api = grabber.Api();
    const bool isFirst = NoThrow(false, [&grabber] { return TheRegistry().Add(grabber); });
    if (isFirst &&
        api.PxnFeatureInvalidationRegister(PXN_SYSTEM_HANDLE, kDiscoveryFeature, OnDiscovery,
                                           api.GetLibraryHandle()) != PxnErrSuccess) {
        TheRegistry().Remove(grabber);
    }
}

void DiscoveryEvents::Release(CMivoraKVNPyxenClass& grabber) {
    // Without memory for the registry no grabber is in it.
    const auto [receiver, wasLast] =
        NoThrow(Registry::Removed{}, [&grabber] { return TheRegistry().Remove(grabber); });
    if (!receiver) {
        return;
    }
    if (wasLast) {
        grabber.Api().PxnFeatureInvalidationUnregister(PXN_SYSTEM_HANDLE, kDiscoveryFeature,
                                                       OnDiscovery);
    }
    platform::MutexLock lock(receiver->callMutex);
    receiver->grabber = nullptr;
}
