// path_rules.h - platform-specific rules behind the shared path functions; internal to platform/
#pragma once

#include <cstddef>
#include <string>

namespace platform {

/// True for '/' and, on Windows, '\\'.
bool IsSeparator(char character);
/// Length of the root at the start of `path`, including its separator: 1 for "/x", 0 for "x"; on
/// Windows 3 for "C:\\x" and 2 for "C:x".
std::size_t RootLength(const std::string& path);

} // namespace platform
