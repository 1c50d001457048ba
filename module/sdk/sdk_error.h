// sdk_error.h - texts for the SDK's result codes
#pragma once

#include "pxnc.h"
#include "sdk/logger.h"

namespace pyxen {

/// Writes one line at the error level that joins `context` with the meaning of `code`; 0 is
/// reported too. Does nothing without a sink. Any thread.
void ReportSdkError(const char* context, PxnError code, Logger log);

/// The meaning of a code without the context ("Timeout during wait"); null for a code that has no
/// text of its own.
const char* SdkErrorText(PxnError code);

} // namespace pyxen
