// environment_windows_test.cpp - empty variables in the system's environment block
#include "platform/environment.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace platform {
namespace {

constexpr const char* kBlockVariable = "MIVORA_PLATFORM_TEST_BLOCK";

TEST(EnvironmentBlock, AnEmptyVariableExists) {
    char value[8] = "before";
    ASSERT_TRUE(SetEnvironment(kBlockVariable, ""));
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(GetEnvironmentVariableA(kBlockVariable, value, sizeof value), 0u);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SUCCESS));
    UnsetEnvironment(kBlockVariable);
    EXPECT_EQ(GetEnvironmentVariableA(kBlockVariable, value, sizeof value), 0u);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ENVVAR_NOT_FOUND));
}

} // namespace
} // namespace platform
