// environment.cpp - environment variables of the system and of the C library
#include "platform/environment.h"

#include <windows.h>

#include <cstdlib>
#include <cstring>

namespace platform {

namespace {

// _putenv_s would treat the part after '=' as the value.
bool IsName(const char* name) {
    return *name != '\0' && !std::strchr(name, '=');
}

} // namespace

std::string GetEnvironment(const char* name) {
    std::string value(128, '\0');
    for (;;) {
        const DWORD length =
            GetEnvironmentVariableA(name, value.data(), static_cast<DWORD>(value.size()));
        const bool fits = length < value.size();
        value.resize(length);
        if (fits) {
            return value;
        }
    }
}

bool SetEnvironment(const char* name, const std::string& value) {
    // The C library keeps its own copy. It is set first, because with an empty value _putenv_s
    // removes the variable, from the system's environment block as well.
    return IsName(name) && _putenv_s(name, value.c_str()) == 0 &&
           SetEnvironmentVariableA(name, value.c_str());
}

void UnsetEnvironment(const char* name) {
    if (IsName(name)) {
        _putenv_s(name, "");
        SetEnvironmentVariableA(name, nullptr);
    }
}

} // namespace platform
