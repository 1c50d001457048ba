// feature_value_text.h - the text in the column of values
#pragma once

#include "pxnc.h"

#include <string>

class CPyxenAPIAccess;

/// The feature's present value, "<unavailable>" when it cannot be read. Without a name the text is
/// empty. `api` must be valid.
std::string FormatFeatureValue(CPyxenAPIAccess& api, PxnHandle handle, const char* name,
                               const PxnFeatureInfo& description);
