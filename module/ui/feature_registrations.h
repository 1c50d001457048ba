// feature_registrations.h - the invalidations that a feature control dialog has asked for
#pragma once

#include "sdk/logger.h"
#include "ui/feature_leaf.h"

#include <array>
#include <cstddef>
#include <vector>

class CPyxenAPIAccess;
class InvalidationReceiver;

/// What a registration is for.
enum class InvalidationKind { kValue, kSync, kBufferFormat, kTiming };

/// Registers features with the SDK and keeps account of it, each step with its line in the log.
/// While the SDK is not valid it is not called. User-interface thread only.
class FeatureRegistrations {
public:
    /// `sink` may be null.
    FeatureRegistrations(CPyxenAPIAccess& access, InvalidationReceiver& newReceiver, Logger sink)
        : api(access), receiver(newReceiver), log(sink) {}

    void Register(InvalidationKind kind, const FeatureLeaf& leaf);
    void Unregister(InvalidationKind kind, const FeatureLeaf& leaf);
    /// All of a kind, in the order of their registration.
    void UnregisterAll(InvalidationKind kind);
    /// Takes everything back from the SDK for good, without a line: those come when the features
    /// are unregistered.
    void Disconnect();

private:
    std::vector<FeatureLeaf>& ListOf(InvalidationKind kind) {
        return lists[static_cast<std::size_t>(kind)];
    }
    void TakeBack(InvalidationKind kind, const FeatureLeaf& leaf);

    CPyxenAPIAccess& api;
    InvalidationReceiver& receiver;
    const Logger log;
    bool connected = true;
    std::array<std::vector<FeatureLeaf>, 4> lists;
};
