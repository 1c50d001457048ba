// sdk_failure.h - exception for an error of the camera SDK
#pragma once

#include "apps/common/command_failure.h"
#include "sdk/sdk_error.h"

#include <string>

/// "reading /Camera/Width failed with -4 (Bad handle)".
inline CommandFailure SdkFailure(const std::string& operation, PxnError code) {
    const char* const meaning = pyxen::SdkErrorText(code);
    return CommandFailure(operation + " failed with " + std::to_string(code) +
                          (meaning ? std::string(" (") + meaning + ")" : ""));
}
