// environment_guard.cpp - an environment variable changed for a scope
#include "tests/support/environment_guard.h"

#include "platform/environment.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace support {

namespace {

void Apply(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
        EXPECT_TRUE(platform::SetEnvironment(name.c_str(), *value)) << name;
    } else {
        platform::UnsetEnvironment(name.c_str());
    }
}

} // namespace

EnvironmentGuard::EnvironmentGuard(const char* nameToKeep, const std::optional<std::string>& value)
    : name(nameToKeep) {
    // platform::GetEnvironment does not distinguish an empty variable from a missing one.
    if (const char* present = std::getenv(nameToKeep)) {
        former = present;
    }
    Apply(name, value);
}

EnvironmentGuard::~EnvironmentGuard() {
    Apply(name, former);
}

} // namespace support
