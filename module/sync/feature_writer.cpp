// feature_writer.cpp - writing a value to a feature
#include "sync/feature_writer.h"

namespace pyxen {

WriteOutcome FeatureWriter::Write(FeatureCache& cache, const Feature& feature,
                                  FeatureValue& value) {
    WriteOutcome outcome;
    SyncCheckResult check = engine.CheckSyncPath(&cache, feature.Name(), value);
    if (!check.ok) {
        outcome.step = WriteStep::kRefused;
        outcome.refusal = std::move(check);
    } else if ((outcome.error = feature.Write(value)) != PxnErrSuccess) {
        outcome.step = WriteStep::kNotWritten;
    } else if ((outcome.error = feature.Read(value)) != PxnErrSuccess) {
        outcome.step = WriteStep::kNotReadBack;
    }
    return outcome;
}

} // namespace pyxen
