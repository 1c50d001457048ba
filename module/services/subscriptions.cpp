// subscriptions.cpp - hosts that follow features
#include "services/subscriptions.h"

#include <string>
#include <utility>

namespace pyxen {

namespace {

constinit thread_local unsigned receiverDepth = 0;

/// Marks the calling thread as inside a receiver.
class ReceiverScope {
public:
    ReceiverScope() { ++receiverDepth; }
    ~ReceiverScope() { --receiverDepth; }
    ReceiverScope(const ReceiverScope&) = delete;
    ReceiverScope& operator=(const ReceiverScope&) = delete;
};

} // namespace

bool Subscriptions::IsInsideReceiver() {
    return receiverDepth > 0;
}

ServiceOutcome Subscriptions::Add(const char* module, const char* name, MV_CHANGE_RECEIVER receiver,
                                  void* receiverContext, std::uint64_t& number) {
    return context.WhileLocked([&] {
        TakeBackLeft();
        ServiceFeature feature;
        ServiceOutcome found = context.FindFeature(module, name, feature);
        if (!found) {
            return found;
        }
        Entries added(1);
        Entry& entry = added.front();
        entry.isOfSystem = feature.module.cache == &context.Grabber().SystemCache();
        entry.place = InvalidationHub::Subscribe(
            context.Grabber().Api(), InvalidationChannel::kService,
            feature.module.cache->GetHandle(), feature.info->name, InvalidationEnding::kWaits,
            [receiver, receiverContext, moduleName = feature.module.name,
             featureName = std::string(feature.info->name)](const Invalidation&) {
                const ReceiverScope scope;
                CallReceiver(receiver, moduleName.c_str(), featureName.c_str(), receiverContext);
            });
        if (!entry.place) {
            return ServiceOutcome{MV_SERVICE_SDK_FAILED,
                                  feature.Path() + ": the camera's SDK does not report changes"};
        }
        const platform::MutexLock hold(mutex);
        entry.number = number = ++lastNumber;
        entries.splice(entries.end(), added);
        return ServiceOutcome();
    });
}

template <typename Wanted>
Subscriptions::Entries Subscriptions::Take(Wanted wanted) {
    Entries taken;
    const platform::MutexLock hold(mutex);
    for (auto entry = entries.begin(); entry != entries.end();) {
        const auto candidate = entry++;
        if (wanted(*candidate)) {
            taken.splice(taken.end(), entries, candidate);
        }
    }
    return taken;
}

ServiceOutcome Subscriptions::End(std::uint64_t number) {
    Entries ending = Take([number](const Entry& entry) { return entry.number == number; });
    if (ending.empty()) {
        return {MV_SERVICE_NOT_FOUND, "there is no such subscription, or it has ended"};
    }
    // Without the lock, since it waits for the receiver. Two receivers that end each other would
    // wait for ever.
    ending.front().place.EndCalls(IsInsideReceiver() ? InvalidationEnding::kAtOnce
                                                     : InvalidationEnding::kWaits);
    const ServiceOutcome outcome = context.WhileLocked([&] {
        TakeBackLeft();
        ending.clear();
        return ServiceOutcome();
    });
    if (!outcome) {
        const platform::MutexLock hold(mutex);
        left.splice(left.end(), ending);
    }
    return {};
}

void Subscriptions::TakeBackLeft() {
    Entries taken;
    const platform::MutexLock hold(mutex);
    taken.swap(left);
}

void Subscriptions::EndOfCamera() {
    TakeBackLeft();
    Take([](const Entry& entry) { return !entry.isOfSystem; });
}

void Subscriptions::EndAll() {
    TakeBackLeft();
    Take([](const Entry&) { return true; });
}

} // namespace pyxen
