#include "platform/environment.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace platform {
namespace {

constexpr const char* kName = "MIVORA_PLATFORM_TEST_BLOCK";

TEST(EnvironmentBlock, AnEmptyVariableIsThere) {
    char value[8] = "before";
    ASSERT_TRUE(SetEnvironment(kName, ""));
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(GetEnvironmentVariableA(kName, value, sizeof value), 0u);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SUCCESS));
    UnsetEnvironment(kName);
    EXPECT_EQ(GetEnvironmentVariableA(kName, value, sizeof value), 0u);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ENVVAR_NOT_FOUND));
}

} // namespace
} // namespace platform
