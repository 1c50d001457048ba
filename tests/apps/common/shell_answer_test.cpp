// shell_answer_test.cpp - tests of the result of a shell operation as text
#include "apps/common/shell_answer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

TEST(ShellAnswer, PrintsPointersAndLists) {
    const int object = 0;
    EXPECT_EQ(ShellAnswer::Pointer(nullptr).Str(), "null");
    EXPECT_EQ(ShellAnswer::Pointer(&object).Str(), "set");
    EXPECT_EQ(ShellAnswer::Pointer(&object, "channel").Str(), "channel");
    EXPECT_EQ(ShellAnswer::Text(nullptr).Str(), "null");
    EXPECT_EQ(ShellAnswer::Ok().WithList("a", {}).WithList("b", {4096, 3}).Str(),
              "ok a=[] b=[4096,3]");
}

TEST(ShellAnswer, PrintsExtremeNumbersInDecimal) {
    EXPECT_EQ(ShellAnswer::Code(MV_NOT_SERVED)
                  .With("max", std::numeric_limits<std::uint64_t>::max())
                  .WithSigned("min", std::numeric_limits<std::int64_t>::min())
                  .Str(),
              "34 max=18446744073709551615 min=-9223372036854775808");
}

} // namespace
