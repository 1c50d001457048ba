// environment_guard.h - an environment variable changed for a scope
#pragma once

#include <optional>
#include <string>

namespace support {

/// Sets an environment variable, or removes it, and brings the former state back at the end.
class EnvironmentGuard {
public:
    /// Without a value the variable is removed. A refusal fails the test.
    explicit EnvironmentGuard(const char* nameToKeep,
                              const std::optional<std::string>& value = std::nullopt);
    ~EnvironmentGuard();
    EnvironmentGuard(const EnvironmentGuard&) = delete;
    EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;

private:
    std::string name;
    std::optional<std::string> former;
};

} // namespace support
