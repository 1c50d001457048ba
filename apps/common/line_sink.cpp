// line_sink.cpp - a log sink that keeps its lines
#include "apps/common/line_sink.h"

#include "apps/common/log_text.h"

#include <cstdarg>

void LineSink::Write(int level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    lines.push_back({level, FormatLogLine(format, arguments)});
    va_end(arguments);
}

void LineSink::WriteError(const char* text) {
    lines.push_back({kMvLogError, text});
}
