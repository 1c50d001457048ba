// log_line.h - lines of the log that may be absent
#pragma once

#include "mivora/log_sink.h"

/// Writes one line at the information level; does nothing without a sink. Any thread.
template <typename... Arguments>
void LogInformation(ILogSink* log, const char* format, Arguments... arguments) {
    if (log) {
        log->Write(kMvLogInformation, format, arguments...);
    }
}

/// The same at the error level.
template <typename... Arguments>
void LogError(ILogSink* log, const char* format, Arguments... arguments) {
    if (log) {
        log->Write(kMvLogError, format, arguments...);
    }
}
