// guarded_main_test.cpp - nothing that is thrown leaves a program's main function
#include "apps/common/guarded_main.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

std::string ErrorsOf(int expectedStatus, int (*body)()) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(GuardedMain("program", body), expectedStatus);
    return testing::internal::GetCapturedStderr();
}

TEST(GuardedMainTest, ReturnsTheStatus) {
    EXPECT_EQ(ErrorsOf(3, [] { return 3; }), "");
}

TEST(GuardedMainTest, ReportsWhatIsThrown) {
    EXPECT_EQ(ErrorsOf(1, []() -> int { throw std::bad_alloc(); }), "program: out of memory\n");
    EXPECT_EQ(ErrorsOf(1, []() -> int { throw std::runtime_error("no such thing"); }),
              "program: no such thing\n");
}

} // namespace
