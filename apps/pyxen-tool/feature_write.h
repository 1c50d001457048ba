// feature_write.h - parses, checks and writes values of features
#pragma once

#include "apps/pyxen-tool/feature_access.h"
#include "sync/sync_engine.h"

#include <string>

/// Parses the text according to the feature's type: numbers in decimal or 0x..., true or false
/// (also 1 and 0, On and Off), raw bytes in hexadecimal. An entry's name is kept by `text`. Throws
/// CommandFailure.
pyxen::FeatureValue ParseFeatureValue(const FeatureAccess& feature, const std::string& text);

/// Checks and writes a value; throws CommandFailure with what refused it or with the SDK's reason.
/// `text` is what the user gave. Whether the value could be read back is left to the caller.
void WriteFeatureValue(pyxen::SyncEngine& engine, const FeatureAccess& feature,
                       pyxen::FeatureValue value, const std::string& text);

/// Executes a command feature and waits at most five seconds until it is done.
void RunFeatureCommand(const FeatureAccess& feature);
