// format_text.h - texts in the log's format language
#pragma once

#include <string>

/// Formats as a log sink does ("%I64d" and "%p" included). Throws std::bad_alloc only.
std::string FormatText(const char* format, ...);
