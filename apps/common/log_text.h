// log_text.h - formats log lines
#pragma once

#include <chrono>
#include <cstdarg>
#include <string>

/// Formats a text of any length.
std::string FormatLogLine(const char* format, va_list arguments);
/// Replaces each line end by the two characters "\r" or "\n", so that the text stays on one line.
void EscapeLineEnds(std::string& text);
/// "2026-11-22T23:57:34.123456Z": the time in UTC, to the microsecond.
std::string UtcTimeText(std::chrono::system_clock::time_point time);
