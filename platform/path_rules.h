// path_rules.h - platform-specific rules behind the shared file functions; internal to platform/
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace platform {

/// True for '/' and, on Windows, '\\'.
bool IsSeparator(char character);
/// Length of the root at the start of `path`, including its separator: 1 for "/x", 0 for "x"; on
/// Windows 3 for "C:\\x" and 2 for "C:x".
std::size_t RootLength(const std::string& path);
/// Replaces `path` by the target of the symbolic links it names, which need not exist. False with
/// errno set when there are too many links. Windows leaves links to the system.
bool FollowSymbolicLinks(std::string& path);
/// Opens a file to be read as bytes, in a way that does not prevent others from replacing it; null
/// with errno set on failure.
std::FILE* OpenForReading(const std::string& path);

} // namespace platform
