// log_text.h - finished log lines
#pragma once

#include <cstdarg>
#include <string>

/// The whole text, whatever its length.
std::string FormatLogLine(const char* format, va_list arguments);
/// Writes line ends inside a text as \r and \n, so that it stays one line.
void EscapeLineEnds(std::string& text);
