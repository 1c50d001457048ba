// control.h - the simulator's control interface, beside the 55 entry points of the SDK
#pragma once

#include "pxnc.h"

extern "C" {

/// Runs one command line and writes its answer, terminated and cut to `answerSize` bytes.
///
/// Returns 0, or a negative code when the command is refused; the answer is then the reason. A
/// null `answer` or an `answerSize` of 0 discards the answer. Any thread, before and after startup.
/// docs/simulator.md lists the commands, and so does "help".
PXN_API int32_t PxnControl(const char* command, char* answer, uint32_t answerSize);
}
