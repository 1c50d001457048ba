// environment.h - environment variables of this process
//
// Threads: the environment must not be changed while another thread accesses it.
#pragma once

#include <string>

namespace platform {

/// Value of the variable; empty when it is empty or not set.
std::string GetEnvironment(const char* name);
/// Sets the variable for this process, including the C library's view of it; `value` may be empty.
/// False when `name` is empty or contains '=', and when the system reports an error.
bool SetEnvironment(const char* name, const std::string& value);
/// Removes the variable; does nothing when it is not set.
void UnsetEnvironment(const char* name);

} // namespace platform
