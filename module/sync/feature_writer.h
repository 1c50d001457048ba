// feature_writer.h - writing a value to a feature
#pragma once

#include "sdk/feature.h"
#include "sync/sync_engine.h"

class FeatureCache;

namespace pyxen {

enum class WriteStep {
    kDone,
    kRefused,     ///< by the check; nothing was written
    kNotWritten,  ///< the SDK failed
    kNotReadBack, ///< written, but the SDK failed to read it
};

/// What became of a value.
struct WriteOutcome {
    WriteStep step = WriteStep::kDone;
    SyncCheckResult refusal; ///< when the check refused
    PxnError error = PxnErrSuccess;
};

/// The one way to write a value that a user gave: checks the feature and all that depend on it,
/// writes, and reads back. Those that depend on it are not synchronised. The SDK must be valid.
class FeatureWriter {
public:
    explicit FeatureWriter(SyncEngine& syncEngine) : engine(syncEngine) {}

    /// `cache` is that of the feature's module. `value` becomes what the feature holds afterwards;
    /// without success it stays.
    WriteOutcome Write(FeatureCache& cache, const Feature& feature, FeatureValue& value);

private:
    SyncEngine& engine;
};

} // namespace pyxen
