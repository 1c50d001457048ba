// feature_registrations.h - the invalidations that a feature control dialog has asked for
#pragma once

#include "sdk/invalidation_hub.h"
#include "sdk/logger.h"
#include "ui/feature_leaf.h"
#include "ui/invalidation_receiver.h"

#include <array>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

class CPyxenAPIAccess;

namespace pyxen {

/// Follows features and keeps account of it, each step with its line in the log. The SDK is called
/// only while it is valid and for modules that are open. User-interface thread only.
class FeatureRegistrations {
public:
    /// `sink` may be null.
    FeatureRegistrations(CPyxenAPIAccess& access, std::shared_ptr<InvalidationReceiver> newReceiver,
                         Logger sink)
        : api(access), receiver(std::move(newReceiver)), log(sink) {}

    void Register(InvalidationKind kind, const FeatureLeaf& leaf);
    void Unregister(InvalidationKind kind, const FeatureLeaf& leaf);
    /// All of a kind, in the order of their registration.
    void UnregisterAll(InvalidationKind kind);
    /// Takes everything back from the SDK for good, without a line: those come when the features
    /// are unregistered.
    void Disconnect();

private:
    struct Entry {
        FeatureLeaf leaf;
        InvalidationSubscription subscription; // none when the SDK was not called or refused
    };

    std::vector<Entry>& ListOf(InvalidationKind kind) {
        return lists[static_cast<std::size_t>(kind)];
    }
    InvalidationSubscription Subscribe(InvalidationKind kind, const FeatureLeaf& leaf);

    CPyxenAPIAccess& api;
    const std::shared_ptr<InvalidationReceiver> receiver;
    const Logger log;
    bool connected = true;
    std::array<std::vector<Entry>, 4> lists;
};

} // namespace pyxen
