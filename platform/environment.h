// environment.h - environment variables of this process
#pragma once

#include <string>

namespace platform {

/// The variable's value; empty when it is unset or empty.
std::string GetEnvironment(const char* name);
/// Sets the variable for this process and its libraries; false when the system refused.
bool SetEnvironment(const char* name, const std::string& value);
void UnsetEnvironment(const char* name);

} // namespace platform
