// feature_writer.h - how the feature control dialog writes a value
#pragma once

#include "pxnc.h"
#include "sdk/logger.h"
#include "sync/sync_engine.h"
#include "ui/feature_leaf.h"

#include <cstdint>
#include <optional>
#include <string>

class CPyxenAPIAccess;

/// What became of a value that the user committed.
struct WriteOutcome {
    bool written = false;                   ///< also read back
    std::optional<SyncCheckResult> refusal; ///< set when the check refused; nothing was written
};

/// A message box to show.
struct BoxText {
    std::string text;
    std::string caption;
};

/// Checks, writes and reads back. SDK failures have their line in the log. The SDK must be valid.
/// User-interface thread only.
class FeatureWriter {
public:
    /// `sink` may be null.
    FeatureWriter(CPyxenAPIAccess& access, SyncEngine& engine, Logger sink)
        : api(access), sync(engine), log(sink) {}

    // `value` becomes what the camera holds afterwards.
    WriteOutcome WriteInteger(const FeatureLeaf& leaf, std::int64_t& value);
    WriteOutcome WriteFloat(const FeatureLeaf& leaf, double& value);
    WriteOutcome WriteEnum(const FeatureLeaf& leaf, std::string& value);
    WriteOutcome WriteString(const FeatureLeaf& leaf, std::string& value);
    WriteOutcome WriteBool(const FeatureLeaf& leaf, bool& value);
    WriteOutcome RunCommand(const FeatureLeaf& leaf);

    /// The box for a value that was not written.
    static BoxText FailureBox(const FeatureLeaf& leaf, const WriteOutcome& outcome);

private:
    WriteOutcome Failed(NameFormat format, const FeatureLeaf& leaf, PxnError error) const;

    CPyxenAPIAccess& api;
    SyncEngine& sync;
    const Logger log;
};
