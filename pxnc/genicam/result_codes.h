// result_codes.h - Aravis' errors as result codes of the SDK
#pragma once

#include "pxnc.h"
#include "pxnc/genicam/glib_owner.h"

#include <cstdint>

namespace genicam {

/// The code for the error of a call of Aravis; success when there was none.
PxnError ToResult(const ErrorOwner& error);

/// The receive status for the status of a buffer that is not aborted.
std::int32_t ToReceiveStatus(ArvBufferStatus status);

} // namespace genicam
