// environment_guard_test.cpp - changing an environment variable for a scope
#include "tests/support/environment_guard.h"

#include "platform/environment.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace support {
namespace {

constexpr const char* kGuardedVariable = "MIVORA_SUPPORT_TEST";

TEST(EnvironmentGuard, RestoresTheFormerValue) {
    platform::SetEnvironment(kGuardedVariable, "before");
    {
        const EnvironmentGuard guard(kGuardedVariable, "during");
        EXPECT_EQ(platform::GetEnvironment(kGuardedVariable), "during");
        const EnvironmentGuard inner(kGuardedVariable);
        EXPECT_EQ(std::getenv(kGuardedVariable), nullptr);
    }
    EXPECT_EQ(platform::GetEnvironment(kGuardedVariable), "before");
    platform::UnsetEnvironment(kGuardedVariable);
}

TEST(EnvironmentGuard, RemovesAVariableThatWasNotSet) {
    platform::UnsetEnvironment(kGuardedVariable);
    {
        const EnvironmentGuard guard(kGuardedVariable, "during");
        EXPECT_STREQ(std::getenv(kGuardedVariable), "during");
    }
    EXPECT_EQ(std::getenv(kGuardedVariable), nullptr);
}

} // namespace
} // namespace support
