// environment.h - environment variables of this process
#pragma once

#include <string>

namespace platform {

/// The variable's value; empty when it is unset or empty.
std::string GetEnvironment(const char* name);
/// Sets the variable for this process and its libraries; an empty value is allowed. False when the
/// system refused. To be called while no other thread reads the environment.
bool SetEnvironment(const char* name, const std::string& value);
/// Removes the variable, under the same condition.
void UnsetEnvironment(const char* name);

} // namespace platform
