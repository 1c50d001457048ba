// whole_file.h - reads and writes files in one piece
#pragma once

#include <string>

/// Throws CommandFailure with the system's reason.
std::string ReadWholeFile(const std::string& path);
/// Replaces the file. Throws CommandFailure with the system's reason.
void WriteWholeFile(const std::string& path, const std::string& content);
