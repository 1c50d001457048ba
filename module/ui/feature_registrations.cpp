// feature_registrations.cpp - the invalidations that a feature control dialog has asked for
#include "ui/feature_registrations.h"

#include "sdk/pyxen_api_access.h"

#include <algorithm>

namespace pyxen {

namespace {

struct KindRegistration {
    InvalidationChannel channel;
    NameFormat registering;
    NameFormat unregistering;
};

// In the order of InvalidationKind.
// Compatibility: support searches for these lines, two of which have a misspelt word.
constexpr KindRegistration kKindRegistrations[] = {
    {InvalidationChannel::kFeatureValue,
     "CKVNPyxenFeatureCtrlDialog::RegisterDlgInvalidationFeatures: Registering %s",
     "CKVNPyxenFeatureCtrlDialog::UnregisterDlgInvalidationFeatures: Unregistering %s"},
    {InvalidationChannel::kSyncFeature,
     "CKVNPyxenFeatureCtrlDialog::RegisterSyncInvalidationFeatures: Registering %s",
     "CKVNPyxenFeatureCtrlDialog::UnregisterSyncInvalidationFeatures: Unregistering %s"},
    {InvalidationChannel::kBufferFormat,
     "CKVNPyxenFeatureCtrlDialog::RegisterBufferFormatInvalidationFeatures: Registering %s",
     "CKVNPyxenFeatureCtrlDialog::UnegisterBufferFormatInvalidationFeatures: Unregistering %s"},
    {InvalidationChannel::kTiming,
     "CKVNPyxenFeatureCtrlDialog::RegisterExtNotificationInvalidationFeatures: Registering %s",
     "CKVNPyxenFeatureCtrlDialog::UnegisterExtNotificationInvalidationFeatures: Unregistering %s"},
};

const KindRegistration& About(InvalidationKind kind) {
    return kKindRegistrations[static_cast<std::size_t>(kind)];
}

} // namespace

void FeatureRegistrations::Register(InvalidationKind kind, const FeatureLeaf& leaf) {
    log.Information(About(kind).registering, leaf.name.c_str());
    ListOf(kind).push_back({leaf, Subscribe(kind, leaf)});
}

InvalidationSubscription FeatureRegistrations::Subscribe(InvalidationKind kind,
                                                         const FeatureLeaf& leaf) {
    if (!connected || !leaf.IsOpen() || !api.IsValid()) {
        return {};
    }
    return InvalidationHub::Subscribe(
        api, About(kind).channel, leaf.handle, leaf.name, InvalidationEnding::kAtOnce,
        [kind, to = receiver, path = leaf.path](const Invalidation& event) {
            to->Receive(kind, event, path);
        });
}

void FeatureRegistrations::Unregister(InvalidationKind kind, const FeatureLeaf& leaf) {
    std::vector<Entry>& list = ListOf(kind);
    const auto place = std::find_if(list.begin(), list.end(), [&](const Entry& known) {
        return known.leaf.handle == leaf.handle && known.leaf.name == leaf.name;
    });
    if (place == list.end()) {
        return;
    }
    Entry known = std::move(*place);
    list.erase(place);
    log.Information(About(kind).unregistering, known.leaf.name.c_str());
    known.subscription.Unsubscribe();
}

void FeatureRegistrations::UnregisterAll(InvalidationKind kind) {
    for (Entry& known : std::exchange(ListOf(kind), {})) {
        log.Information(About(kind).unregistering, known.leaf.name.c_str());
        known.subscription.Unsubscribe();
    }
}

void FeatureRegistrations::Disconnect() {
    for (std::vector<Entry>& list : lists) {
        for (Entry& known : list) {
            known.subscription.Unsubscribe();
        }
    }
    connected = false;
}

} // namespace pyxen
