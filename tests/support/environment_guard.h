// environment_guard.h - an environment variable changed for a scope
#pragma once

#include <optional>
#include <string>

namespace support {

/// Sets or removes an environment variable and restores its former state when destroyed.
class EnvironmentGuard {
public:
    /// Without `value` the variable is removed. The test fails when it cannot be set.
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
