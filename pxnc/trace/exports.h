// exports.h - what the library exports beside the 55 functions of the SDK
#pragma once

#include "pxnc.h"

extern "C" {

/// The control interface of the SDK behind. PxnErrNotImplemented when it has none.
PXN_API int32_t PxnControl(const char* command, char* answer, uint32_t answerSize);

/// Stores the four parts of the file version of the library behind, or of the one that was traced;
/// 65535 each when it has none. A library that has this function is not asked for its own file
/// version. Any thread.
PXN_API void PxnLibraryVersion(uint16_t* parts);

/// Ends the trace, and reports on standard error when a session that is played back was left early.
/// 1 when everything was as in the trace, or nothing was played back; 0 when something differed or
/// the library could not be set up. The process's end does the same.
PXN_API int32_t PxnTraceFinish(void);
}
