// path_rules.h - what the shared path functions ask the platform; for platform/ only
#pragma once

#include <cstddef>
#include <string>

namespace platform {

bool IsSeparator(char character);
/// How many characters at the start name the root, its separator included: 1 for "/x", 0 for "x",
/// on Windows 3 for "C:\\x" and 2 for "C:x".
std::size_t RootLength(const std::string& path);

} // namespace platform
