// result_codes.h - Aravis' errors in the interface's codes
#pragma once

#include "pxnc/genicam/glib_owner.h"
#include "pxnc/include/pxnc.h"

namespace genicam {

/// The code for what a call of Aravis reported; success when it reported nothing.
PxnError ToResult(const ErrorOwner& error);

/// The receive status for what Aravis says about a buffer that is not aborted.
int32_t ToReceiveStatus(ArvBufferStatus status);

} // namespace genicam
