// feature_write.h - parses, checks and writes values of features
#pragma once

#include "apps/pyxen-tool/feature_access.h"
#include "sync/sync_engine.h"

#include <string>

class CMivoraKVNPyxenClass;

/// Parses the text according to the feature's type: numbers in decimal or 0x..., true or false
/// (also 1 and 0, On and Off), raw bytes in hexadecimal. An entry's name is kept by `text`. Throws
/// CommandFailure.
FeatureValue ParseFeatureValue(const FeatureAccess& feature, const std::string& text);

/// Runs the pre-write check for the value's type. There is none for raw bytes, which pass.
SyncCheckResult CheckFeatureValue(SyncEngine& engine, const FeatureAccess& feature,
                                  const FeatureValue& value);

/// Writes; throws CommandFailure with the SDK's reason.
void WriteFeatureValue(const FeatureAccess& feature, const FeatureValue& value);

/// Executes a command feature and waits at most five seconds until it is done.
void RunFeatureCommand(CMivoraKVNPyxenClass& grabber, const FeatureAccess& feature);
