// feature_value_text.h - the text in the column of values
#pragma once

#include "sdk/feature.h"

#include <string>

namespace pyxen {

/// The feature's present value, "<unavailable>" when it cannot be read. Without a name the text is
/// empty. The SDK must be valid.
std::string FormatFeatureValue(const Feature& feature);

} // namespace pyxen
