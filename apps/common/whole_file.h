// whole_file.h - reads and writes files in one piece
#pragma once

#include "apps/common/encoded_frame.h"

#include <string>

/// Throws CommandFailure with the system's reason.
std::string ReadWholeFile(const std::string& path);
/// Replaces the file. Throws CommandFailure with the system's reason.
void WriteWholeFile(const std::string& path, const std::string& content);
/// Writes a file that gets its name when it is whole; what is no regular file, such as a pipe, is
/// written to directly. Throws CommandFailure with the system's reason.
void WriteEncodedFrame(const std::string& path, const EncodedFrame& frame);
