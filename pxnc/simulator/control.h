// control.h - the simulator's control interface, beside the camera maker's 55 entry points
#pragma once

#include "pxnc.h"

extern "C" {

/// Runs one command line and writes its answer, terminated and cut to `answerSize` bytes.
///
/// 0: done. Negative: refused, the answer says why. A null `answer` or an `answerSize` of 0
/// discards the answer. Any thread, before and after startup. docs/simulator.md lists the
/// commands; "help" does so too.
PXN_API int32_t PxnControl(const char* command, char* answer, uint32_t answerSize);
}
