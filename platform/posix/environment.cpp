// environment.cpp - environment variables through the C library
#include "platform/environment.h"

#include <cstdlib>

namespace platform {

std::string GetEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool SetEnvironment(const char* name, const std::string& value) {
    return setenv(name, value.c_str(), 1) == 0;
}

void UnsetEnvironment(const char* name) {
    unsetenv(name);
}

} // namespace platform
