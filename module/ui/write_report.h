// write_report.h - what the feature control dialog says of a value that was not written
#pragma once

#include "sdk/feature.h"
#include "sdk/logger.h"
#include "sync/feature_writer.h"

#include <string>

namespace pyxen {

/// A message box to show.
struct BoxText {
    std::string text;
    std::string caption;
};

/// Logs that the form of an editor had no value. `log` may be null, as below.
void ReportNoValue(FeatureType type, Logger log);
/// Logs the failure of an outcome. What the check refused, it has logged itself.
void ReportWrite(const Feature& feature, const WriteOutcome& outcome, Logger log);
/// The box for a value that was refused, not written or not read back.
BoxText FailureBox(const std::string& name, const WriteOutcome& outcome);

} // namespace pyxen
