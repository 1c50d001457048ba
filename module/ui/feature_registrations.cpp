// feature_registrations.cpp - the invalidations that a feature control dialog has asked for
#include "ui/feature_registrations.h"

#include "sdk/logger.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"
#include "ui/invalidation_receiver.h"
#include "ui/shared_registrations.h"

#include <algorithm>
#include <utility>

namespace {

struct Kind {
    PxnInvalidationCallback callback;
    NameFormat registering;
    NameFormat unregistering;
};

// In the order of InvalidationKind. Two of the words are misspelt, which is intended.
constexpr Kind kKinds[] = {
    {InvalidationReceiver::InvalidationCallback,
     "CKVNPyxenFeatureCtrlDialog::RegisterDlgInvalidationFeatures: Registering %s",
     "CKVNPyxenFeatureCtrlDialog::UnregisterDlgInvalidationFeatures: Unregistering %s"},
    {InvalidationReceiver::SyncInvalidationCallback,
     "CKVNPyxenFeatureCtrlDialog::RegisterSyncInvalidationFeatures: Registering %s",
     "CKVNPyxenFeatureCtrlDialog::UnregisterSyncInvalidationFeatures: Unregistering %s"},
    {InvalidationReceiver::BufferFormatInvalidationCallback,
     "CKVNPyxenFeatureCtrlDialog::RegisterBufferFormatInvalidationFeatures: Registering %s",
     "CKVNPyxenFeatureCtrlDialog::UnegisterBufferFormatInvalidationFeatures: Unregistering %s"},
    {InvalidationReceiver::ExtNotificationInvalidationCallback,
     "CKVNPyxenFeatureCtrlDialog::RegisterExtNotificationInvalidationFeatures: Registering %s",
     "CKVNPyxenFeatureCtrlDialog::UnegisterExtNotificationInvalidationFeatures: Unregistering %s"},
};

const Kind& About(InvalidationKind kind) {
    return kKinds[static_cast<std::size_t>(kind)];
}

} // namespace

void FeatureRegistrations::Register(InvalidationKind kind, const FeatureLeaf& leaf) {
    log.Information(About(kind).registering, leaf.name.c_str());
    ListOf(kind).push_back(leaf);
    if (connected && api.IsValid()) {
        receiver.Know(leaf);
        SharedRegistrations::Instance().Register(api, leaf.handle, leaf.name, About(kind).callback,
                                                 receiver.Context());
    }
}

void FeatureRegistrations::Unregister(InvalidationKind kind, const FeatureLeaf& leaf) {
    std::vector<FeatureLeaf>& list = ListOf(kind);
    const auto place = std::find_if(list.begin(), list.end(), [&](const FeatureLeaf& known) {
        return known.handle == leaf.handle && known.name == leaf.name;
    });
    if (place == list.end()) {
        return;
    }
    const FeatureLeaf known = std::move(*place);
    list.erase(place);
    log.Information(About(kind).unregistering, known.name.c_str());
    TakeBack(kind, known);
}

void FeatureRegistrations::UnregisterAll(InvalidationKind kind) {
    for (const FeatureLeaf& leaf : std::exchange(ListOf(kind), {})) {
        log.Information(About(kind).unregistering, leaf.name.c_str());
        TakeBack(kind, leaf);
    }
}

void FeatureRegistrations::TakeBack(InvalidationKind kind, const FeatureLeaf& leaf) {
    if (!connected || !api.IsValid()) {
        return;
    }
    // Without memory it stays registered, which is of no effect once the receiver is closed.
    NoThrow(false, [&] {
        SharedRegistrations::Instance().Unregister(api, leaf.handle, leaf.name,
                                                   About(kind).callback, receiver.Context());
        return true;
    });
}

void FeatureRegistrations::Disconnect() {
    for (const InvalidationKind kind :
         {InvalidationKind::kValue, InvalidationKind::kSync, InvalidationKind::kBufferFormat,
          InvalidationKind::kTiming}) {
        for (const FeatureLeaf& leaf : ListOf(kind)) {
            TakeBack(kind, leaf);
        }
    }
    connected = false;
}
