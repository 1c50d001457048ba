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

TEST(ShellAnswer, IsAnObjectInJson) {
    const std::uint8_t bytes[] = {0x0A, 0xFF};
    EXPECT_EQ(ShellAnswer::Code(MV_OK)
                  .With("count", 2)
                  .WithSigned("low", -3)
                  .WithText("text", "a\"b")
                  .WithBytes("data", bytes)
                  .WithList("list", {1, 2})
                  .Json("Read"),
              R"({"schema":1,"operation":"Read","result":0,"values":{"count":2,"low":-3,)"
              R"("text":"a\"b","data":"0AFF","list":[1,2]}})");
    EXPECT_EQ(ShellAnswer::Pointer(nullptr).Json("Get"),
              R"({"schema":1,"operation":"Get","result":null,"values":{}})");
    EXPECT_EQ(ShellAnswer::Text("t").Json("Get"),
              R"({"schema":1,"operation":"Get","result":"t","values":{}})");
}

TEST(ShellAnswer, PrintsExtremeNumbersInDecimal) {
    EXPECT_EQ(ShellAnswer::Code(MV_NOT_SERVED)
                  .With("max", std::numeric_limits<std::uint64_t>::max())
                  .WithSigned("min", std::numeric_limits<std::int64_t>::min())
                  .Str(),
              "34 max=18446744073709551615 min=-9223372036854775808");
}

} // namespace
