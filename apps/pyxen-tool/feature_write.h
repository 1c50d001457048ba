// feature_write.h - values for features, from text to the camera
#pragma once

#include "apps/pyxen-tool/feature_access.h"
#include "sync/sync_engine.h"

#include <string>

class CMivoraKVNPyxenClass;

/// Reads the text as the feature's type wants it: numbers in decimal or 0x..., true or false (also
/// 1 and 0, On and Off), raw bytes in hexadecimal. Throws CommandFailure.
FeatureValue ParseFeatureValue(const FeatureAccess& feature, const std::string& text);

/// Runs the pre-write check of the value's type. Raw bytes have none and pass.
SyncCheckResult CheckFeatureValue(SyncEngine& engine, const FeatureAccess& feature,
                                  const FeatureValue& value);

/// Writes; throws CommandFailure with the SDK's reason.
void WriteFeatureValue(CPyxenAPIAccess& api, const FeatureAccess& feature,
                       const FeatureValue& value);

/// Executes a command feature and waits until it is done, at most five seconds.
void RunFeatureCommand(CMivoraKVNPyxenClass& grabber, const FeatureAccess& feature);
